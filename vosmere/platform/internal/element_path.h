// The path of the element in which a document failed, written from the inside out.
#pragma once

#include <cstddef>

#include "vosmere/base/document_error.h"
#include "vosmere/base/wide_view.h"

namespace vosmere {

/// Puts "/name" in front of DocumentError::element, or "/name[position]" if the position among the
/// siblings of that name, from 1, is not the first. Long names are cut. Returns false when there is
/// no more room; the path then begins with "...". Does not allocate.
bool PrecedeElement(DocumentError* error, WideView name, std::size_t position);

}  // namespace vosmere
