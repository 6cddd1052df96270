// The verb "browse": a document in a terminal, where it can be folded, searched and marked.
#pragma once

#include <CLI/CLI.hpp>

namespace vosmere::tool {

/// Adds the verb, if the tool is built with it (browse_curses.cc instead of browse_none.cc).
void AddBrowse(CLI::App& app, int& exitCode);

}  // namespace vosmere::tool
