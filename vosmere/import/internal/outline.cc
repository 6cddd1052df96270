// Makes outlines of other programs into those that the reader of trees knows.
#include "vosmere/import/internal/outline.h"

#include <algorithm>
#include <iterator>

#include "vosmere/import/internal/addresses.h"
#include "vosmere/import/internal/utf8_text.h"

namespace vosmere::importing {
namespace {

enum class OutlineType { kFeed, kLink, kSearch, kOther };

constexpr struct {
  std::string_view name;
} kNames[] = {{"text"}, {"title"}, {"description"}, {"type"}, {"xmlUrl"}, {"htmlUrl"}, {"url"}};

constexpr struct {
  std::string_view name;
  OutlineType type;
} kTypes[] = {
    {"rss", OutlineType::kFeed},
    {"rss1", OutlineType::kFeed},
    {"rss2", OutlineType::kFeed},
    {"atom", OutlineType::kFeed},
    {"atom10", OutlineType::kFeed},
    {"pie", OutlineType::kFeed},
    {"rdf", OutlineType::kFeed},
    {"feed", OutlineType::kFeed},
    {"application/rss+xml", OutlineType::kFeed},
    {"application/atom+xml", OutlineType::kFeed},
    {"link", OutlineType::kLink},
    {"page", OutlineType::kLink},
    {"webpage", OutlineType::kLink},
    {"bookmark", OutlineType::kLink},
    {"url", OutlineType::kLink},
    {"html", OutlineType::kLink},
    {"include", OutlineType::kLink},
    {"search", OutlineType::kSearch},
    {"savedsearch", OutlineType::kSearch},
    {"vfolder", OutlineType::kSearch},
    {"smartfolder", OutlineType::kSearch},
    {"query", OutlineType::kSearch},
};

OutlineType OutlineTypeOf(std::string_view word) {
  const auto* const row = FindNoCase(kTypes, Trimmed(word));
  return row ? row->type : OutlineType::kOther;
}

class Fixing {
 public:
  Fixing(Token& outline, RepairList* repairs) : outline_(outline), repairs_(repairs) {}

  bool Run() {
    const Attribute* const type = Find("type");
    const OutlineType kind = OutlineTypeOf(type ? type->value : std::string_view());
    if (kind == OutlineType::kSearch) {
      Add(RepairKind::kSavedSearch, outline_.at, outline_.text, {});
      return false;
    }
    FixKind(kind, type && !type->value.empty());
    FixTitle();
    for (Attribute& attribute : outline_.attributes)
      if (EndsNoCase(attribute.name, "url"))
        attribute.value = FixAddress(attribute.value, attribute.at, repairs_);
    return true;
  }

 private:
  void Add(RepairKind kind, std::size_t at, std::string_view found, std::string_view made) {
    if (repairs_) repairs_->Add(kind, at, found, made);
  }

  /// An attribute with a value that is not blank; null if there is none.
  Attribute* Find(std::string_view name) {
    const auto found =
        std::find_if(outline_.attributes.begin(), outline_.attributes.end(), [&](auto& attribute) {
          return attribute.name == name && !Trimmed(attribute.value).empty();
        });
    return found == outline_.attributes.end() ? nullptr : &*found;
  }

  /// Renames an attribute; another one of the new name, which is blank, goes.
  void Rename(std::string_view name, std::string_view newName) {
    const Attribute old = *Find(name);
    std::erase_if(outline_.attributes,
                  [&](const Attribute& a) { return a.name == name || a.name == newName; });
    outline_.attributes.push_back({newName, old.value, old.at});
    Add(RepairKind::kName, old.at, name, newName);
  }

  void FixKind(OutlineType kind, bool hasType) {
    const bool hasUrl = Find("url"), hasHome = Find("htmlUrl"), hasFeed = Find("xmlUrl");
    const bool isFeed = hasFeed || kind == OutlineType::kFeed;
    const bool isLone = !hasType && outline_.isEmpty && hasHome;
    if (isFeed && !hasFeed && hasUrl) Rename("url", "xmlUrl");
    if (isFeed) return SetType("rss", hasType);
    if (kind != OutlineType::kLink && !hasUrl && !isLone) return;
    if (!hasUrl && hasHome) Rename("htmlUrl", "url");
    if (hasUrl || hasHome) SetType("link", hasType);
  }

  void SetType(std::string_view word, bool hasType) {
    if (Attribute* const type = hasType ? Find("type") : nullptr) {
      if (type->value != word) Add(RepairKind::kType, type->at, type->value, word);
      type->value = word;
      return;
    }
    std::erase_if(outline_.attributes, [](const Attribute& a) { return a.name == "type"; });
    const bool isSaid = word != "rss";  // the reader knows a feed by its address
    if (isSaid) Add(RepairKind::kType, outline_.at, {}, word);
    outline_.attributes.push_back({"type", word, outline_.at});
  }

  void FixTitle() {
    const Attribute* const text = Find("text");
    const Attribute* const title = Find("title");
    if (!text || !title || text->value == title->value) return;
    Add(RepairKind::kTitle, title->at, title->value, text->value);
    outline_.attributes.erase(outline_.attributes.begin() + (title - outline_.attributes.data()));
  }

  Token& outline_;
  RepairList* repairs_;
};

}  // namespace

void NameAttributes(Token& outline, RepairList* repairs) {
  for (Attribute& attribute : outline.attributes) {
    const auto* const row = FindNoCase(kNames, attribute.name);
    if (!row || attribute.name == row->name) continue;
    if (repairs) repairs->Add(RepairKind::kName, attribute.at, attribute.name, row->name);
    attribute.name = row->name;
  }
}

bool FixOutline(Token& outline, RepairList* repairs) {
  return Fixing(outline, repairs).Run();
}

}  // namespace vosmere::importing
