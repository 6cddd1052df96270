// The verb "show".
#include "tools/show.h"

#include <map>
#include <string_view>

#include "tools/text.h"

namespace vosmere::tool {
namespace {

std::string Value(const Json& value) {
  return Printable(value.is_string() ? value.get<std::string>() : value.dump());
}

bool IsMark(const Json& value) {
  return value.is_boolean() || value.is_number();
}

/// What the line of a record shows of a field; empty for nothing.
std::string OnLine(const Field& field) {
  const Json& value = field.value;
  if (!(field.traits & kOnLine) || IsNothing(value) || value == false || value == 0) return {};
  if (!IsMark(value)) return "  " + Value(value);
  return "  (" + std::string(field.name) + (value == true ? "" : ' ' + Value(value)) + ')';
}

/// Prints records and counts them for the summary.
class Shower {
 public:
  explicit Shower(std::ostream& out) : out_(out) {}

  void ShowRecord(const Record& record, std::string_view kind, std::size_t level) {
    const std::string indent(2 * level, ' ');
    out_ << indent << '[' << kind << ']' << LineOf(record) << '\n';
    for (const Field& field : record.fields) {
      if (field.traits & kOwnLine && !IsNothing(field.value))
        out_ << indent << "  " << field.name << ": " << Value(field.value) << '\n';
      if (IsMark(field.value) && !OnLine(field).empty()) ++counted_[field.name];
    }
    for (Records at = record.children; at; ++at) {
      const Record child = *at;
      ++counted_[child.kind];
      ShowRecord(child, child.kind, level + 1);
    }
  }

  void ShowCounts(std::span<const Count> counts) {
    const char* separator = "";
    for (const Count& count : counts) {
      out_ << separator << Counted(counted_[count.what], count.name);
      separator = ", ";
    }
    if (!counts.empty()) out_ << '\n';
  }

 private:
  std::ostream& out_;
  std::map<std::string_view, int> counted_;
};

}  // namespace

std::string LineOf(const Record& record) {
  if (record.fields.empty()) return {};
  const std::string name = Printable(NameOf(record));
  std::string line = name.empty() ? " (no name)" : ' ' + name;
  for (const Field& field : record.fields) line += OnLine(field);
  return line;
}

void Show(const Record& content, std::string_view what, std::span<const Count> counts,
          std::ostream& out) {
  Shower shower(out);
  shower.ShowRecord(content, what, 0);
  shower.ShowCounts(counts);
}

void ShowJson(const Record& content, std::ostream& out) {
  out << "{\"kind\":\"" << content.kind << '"';
  for (const Field& field : content.fields)
    out << ",\"" << field.name << "\":" << JsonText(field.value);
  if (content.isContainer) {
    out << ",\"children\":[";
    const char* separator = "";
    for (Records at = content.children; at; ++at, separator = ",") {
      out << separator;
      ShowJson(*at, out);
    }
    out << ']';
  }
  out << '}';
}

}  // namespace vosmere::tool
