// Tags in groups.
#include "vosmere/tags/tags_document.h"

#include "tools/kind.h"
#include "tools/kinds/items.h"

namespace vosmere::tool {
namespace {

Record TagContent(const CTagItem& tag) {
  Record record{"tag"};
  record.Add("name", TextOf(tag.GetName()));
  record.Add("count", tag.GetCount(), kOnLine);
  return record;
}

Record GroupContent(const CTagGroup& group) {
  Record record{"group"};
  record.Add("name", TextOf(group.GetName()));
  AddChildren<TagContent>(record, group.GetTagItemHead());
  return record;
}

Record StoreContent(CTagStore::TagGroupList* head) {
  Record record{"tags"};
  AddChildren<GroupContent>(record, head);
  return record;
}

using Groups = std::unique_ptr<CTagStore::TagGroupList, FreeWith<CTagStore::DeleteRTagGroupList>>;
using LoadedTags = LoadedAs<Groups, StoreContent, CWriteTagsXML, &CWriteTagsXML::SetTagGroupHead>;

constexpr Word kWords[] = {
    {"", "vsmtags", "version"},
    {"vsmtags", "group", "name", true},
    {"group", "tag", "name count#", true},
};

constexpr Count kCounts[] = {{"group", "groups"}, {"tag", "tags"}};

}  // namespace

const Kind kTags = {"vsmtags",
                    "tags",
                    kCounts,
                    {.words = kWords},
                    LoadedTags::LoadList<CReadTagsXML, &CReadTagsXML::DetachTagGroupHead>};

}  // namespace vosmere::tool
