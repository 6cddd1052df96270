// Access to the fields of records.
#include "tools/document_content.h"

#include "tools/text.h"

namespace vosmere::tool {

std::string NameOf(const Record& record) {
  if (record.fields.empty()) return {};
  const Json& name = record.fields[0].value;
  return name.is_string() ? name.get<std::string>() : std::string();
}

std::string JsonText(const Json& value) {
  return Printable(value.dump());
}

bool IsNothing(const Json& value) {
  return value.is_string() ? value.get_ref<const std::string&>().empty() : value.empty();
}

}  // namespace vosmere::tool
