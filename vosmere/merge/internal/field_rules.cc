#include "vosmere/merge/internal/field_rules.h"

#include <algorithm>
#include <climits>
#include <iterator>

#include "vosmere/base/internal/bytes.h"
#include "vosmere/platform/internal/code_page.h"

namespace vosmere {
namespace {

using enum FieldForm;
using enum OnConflict;

// In the order of the numbers.
constexpr FieldRule kRules[] = {
    {kNameField, "name", kText, kNewer},
    {2, "description", kText, kNewer},
    {kAddedField, "added", kTime, kEarlier},
    {kModifiedField, "modified", kTime, kLater},
    {5, "lastVisited", kTime, kLater},
    {kSetTimesField, nullptr, kNumber, kQuietly},
    {7, "unread", kMark, kNewer},
    {8, "flag", kNumber, kNewer},
    {9, "id", kText, kLeast},
    {kVersionField, "version", kNumber, kLater},
    {11, nullptr, kNumber, kQuietly},  // the order: the links have it
    {12, "checkedIn", kNumber, kQuietly},
    {13, "baseBuild", kNumber, kLater},
    {kDeletedField, "deleted", kMark, kQuietly},
    {15, nullptr, kNumber, kQuietly},
    {20, "address", kText, kNewer},
    {21, "author", kText, kNewer},
    {22, "type", kNumber, kNewer},
    {23, "relatedAddress", kText, kNewer},
    {30, nullptr, kNumber, kLater},  // whether there is a property block
    {31, "fileType", kNumber, kNewer},
    {32, "fileExtension", kText, kNewer},
    {33, "tags", kTags, kUnion},
    {34, nullptr, kMark, kQuietly},
    {35, nullptr, kLink, kQuietly},
    {40, "collectionType", kNumber, kNewer},
    {41, nullptr, kMark, kQuietly},
    {42, nullptr, kNumber, kQuietly},
    {50, "ordered", kMark, kNewer},
    {51, "owner", kText, kNewer},
    {52, "sharingDomain", kNumber, kNewer},
    {53, "foreign", kMark, kNewer},
    {54, "role", kNumber, kNewer},
    {55, "synced", kMark, kNewer},
    {56, "pollingInterval", kNumber, kNewer},
    {57, nullptr, kNumber, kQuietly},
    {58, "expanded", kMark, kQuietly},
    {60, nullptr, kNumber, kQuietly},
};

bool IsNoText(std::string_view bytes) {
  return bytes.size() == 1 && bytes[0] <= 1;  // null or without a unit
}

}  // namespace

const FieldRule& RuleOf(unsigned number) {
  return *std::lower_bound(std::begin(kRules), std::end(kRules), number,
                           [](const FieldRule& rule, unsigned n) { return rule.number < n; });
}

bool SameValue(const FieldRule& rule, std::string_view a, std::string_view b) {
  return a == b || (rule.form == kText && IsNoText(a) && IsNoText(b));
}

std::string TextToUtf8(const WChar* text) {
  const WideView units = WideView(text).First(INT_MAX / 4);
  const int count = static_cast<int>(units.size);
  const int size = count ? WideToBytes(kCodePageUtf8, units.data, count, nullptr, 0) : 0;
  std::string utf8(static_cast<std::size_t>(size), '\0');
  if (size) WideToBytes(kCodePageUtf8, units.data, count, utf8.data(), size);
  return utf8;
}

std::string ValueToUtf8(const FieldRule& rule, std::string_view bytes) {
  ByteReader reader(bytes);
  if (rule.form == kText) return TextToUtf8(reader.Text());
  if (rule.form == kMark) return reader.Signed() ? "true" : "false";
  if (rule.form != kTags) return std::to_string(reader.Signed());
  std::string tags;
  for (std::uint64_t left = reader.Number(); left > 0 && !reader.failed(); --left)
    tags += (tags.empty() ? "" : ", ") + TextToUtf8(reader.Text());
  return tags;
}

}  // namespace vosmere
