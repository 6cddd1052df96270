// The kinds of documents that can be loaded and saved, each with its C++ type.
#pragma once

#include <concepts>
#include <cstddef>
#include <memory>
#include <optional>
#include <string_view>

#include "vosmere/collections/colct_item_ids_document.h"
#include "vosmere/collections/colct_list_document.h"
#include "vosmere/collections/colct_profile_document.h"
#include "vosmere/collections/opml_reader.h"
#include "vosmere/collections/opml_writer.h"
#include "vosmere/collections/rss_reader.h"
#include "vosmere/collections/rss_writer.h"
#include "vosmere/cpp/lists.h"
#include "vosmere/cpp/own.h"
#include "vosmere/engines/search_engines_document.h"
#include "vosmere/ftp/ftp_sites_document.h"
#include "vosmere/notify/notification_document.h"
#include "vosmere/pages/page_data_document.h"
#include "vosmere/storage/safe_save.h"
#include "vosmere/tags/tags_document.h"
#include "vosmere/toolbars/toolbars_document.h"

namespace vosmere {

/// The profile of the collections: where the data of each one is, and which is the default.
struct ColctProfile {
  ColctExtraList entries;
  SystemString defaultAddress;  ///< null for none
};

/// Options for Save and SaveToBytes.
struct SaveOptions {
  /// For a Tree and a ColctProfile: addresses in which `library` follows directly after the length
  /// of `base` are written from there on. Null for either writes complete addresses. The texts must
  /// stay valid during the call.
  const WChar* base = nullptr;
  const WChar* library = nullptr;
  /// For a Tree: writes pages, too, as outlines that Import reads and Load takes for folders.
  bool pages = false;
  /// For a Collection: leaves out the items that are checked in and have a base build.
  bool onlyUnchecked = false;
  /// How many places are recorded for each loss.
  std::size_t places = 10;
  /// For a file: its content when it was loaded (MarkOf). If it has another content now, it is not
  /// replaced, and the error is DocumentFault::kChanged. Without it the file is always replaced.
  std::optional<FileMark> expected = {};
};

namespace detail {

/// Specialised for each kind: the name of the root element, how the value is taken from the reader
/// and given to the writer, and IsThere, which says whether a value is a document. An empty list is
/// one, without entries; a null pointer to a single object is not.
template <class Kind>
struct Document;

struct ListDocument {
  template <class List>
  static bool IsThere(const List&) {
    return true;
  }
};
struct SingleDocument {
  template <class Value>
  static bool IsThere(const Value& value) {
    return value != nullptr;
  }
};

template <>
struct Document<Tree> : SingleDocument {
  static constexpr std::string_view kRoot = "opml";
  struct Reader : CReadColctTreeOPML {
    Tree Take() { return Tree(DetachTreeRoot()); }
  };
  struct Writer : CWriteColctTreeOPML {
    Writer(const Tree& tree, const SaveOptions& options) {
      SetTreeRoot(tree.get());
      SetWritePages(options.pages);
      SetBasePathAndLibrary(options.base, options.library);
    }
  };
};

template <>
struct Document<Collection> : SingleDocument {
  static constexpr std::string_view kRoot = "rss";
  struct Reader : CReadBkmarkXML {
    Collection Take() { return Collection(DetachColctNode()); }
  };
  struct Writer : CWriteColctRSS {
    Writer(const Collection& colct, const SaveOptions& options) {
      SetColctNode(colct.get());
      SetOnlyWriteUnchecked(options.onlyUnchecked);
    }
  };
};

template <>
struct Document<ColctList> : ListDocument {
  static constexpr std::string_view kRoot = "collectionlist";
  struct Reader : CReadColctListXML {
    ColctList Take() { return ColctList(DetachRColctItemHead()); }
  };
  struct Writer : CWriteColctListXML {
    Writer(const ColctList& list, const SaveOptions&) { SetRColctItemHead(list.get()); }
  };
};

template <>
struct Document<ColctItemNameList> : ListDocument {
  static constexpr std::string_view kRoot = "colctitem";
  struct Reader : CReadColctItemID {
    ColctItemNameList Take() { return ColctItemNameList(DetachRColctItemIDHead()); }
  };
  struct Writer : CWriteColctItemID {
    Writer(const ColctItemNameList& list, const SaveOptions&) {
      SetRColctItemIDHead(list.get());
      if (HasColctsOnly(list)) SetColctOnly();
    }
    static bool HasColctsOnly(const ColctItemNameList& list) {
      for (const CColctItemID& id : Each(list))
        if (!TextView(id.GetItemID()).empty()) return false;
      return list != nullptr;
    }
  };
};

template <>
struct Document<ColctProfile> {
  static constexpr std::string_view kRoot = "colctprofile";
  static bool IsThere(const ColctProfile&) { return true; }
  struct Reader : CReadColctExData {
    ColctProfile Take() {
      return {ColctExtraList(DetachRColctExDataHead()), SystemString(DetachDefaultColctUrl())};
    }
  };
  struct Writer : CWriteColctExData {
    Writer(const ColctProfile& profile, const SaveOptions& options) {
      SetBasePathAndLibrary(options.base, options.library);
      SetRColctExDataHead(profile.entries.get());
      SetDefaultColctUrl(profile.defaultAddress.get());
    }
  };
};

template <>
struct Document<FtpSiteList> : ListDocument {
  static constexpr std::string_view kRoot = "ftpsites";
  struct Reader : CReadFtpSiteXML {
    FtpSiteList Take() { return FtpSiteList(DetachFtpSiteList()); }
  };
  struct Writer : CWriteFtpSiteXML {
    Writer(const FtpSiteList& sites, const SaveOptions&) { SetFtpConList(sites.get()); }
  };
};

template <>
struct Document<Notification> : SingleDocument {
  static constexpr std::string_view kRoot = "vsmnotify";
  struct Reader : CReadVSMNotify {
    Notification Take() { return Notification(DetachVSMNotifyMsg()); }
  };
  struct Writer : CWriteVSMNotifyMsg {
    Writer(const Notification& message, const SaveOptions&) { SetVSMNotifyMsg(message.get()); }
  };
};

/// A base class, so that the page exists before the reader that needs it is constructed.
struct NewPage {
  PageData page = std::make_unique<CPageData>();
};

template <>
struct Document<PageData> : SingleDocument {
  static constexpr std::string_view kRoot = "vsmpagedata";
  struct Reader : private NewPage, CReadPageDataXML {
    Reader() : CReadPageDataXML(NewPage::page.get()) {}
    PageData Take() { return std::move(NewPage::page); }
  };
  struct Writer : CWritePageDataXML {
    Writer(const PageData& page, const SaveOptions&) : CWritePageDataXML(page.get()) {}
  };
};

template <>
struct Document<EnginePool> : SingleDocument {
  static constexpr std::string_view kRoot = "searchEnginePool";
  struct Reader : CReadSEngineXML {
    EnginePool Take() { return EnginePool(DetachEnginePool()); }
  };
  struct Writer : CWriteSEngineXML {
    Writer(const EnginePool& pool, const SaveOptions&) { SetEnginePool(pool.get()); }
  };
};

template <>
struct Document<TagGroupList> : ListDocument {
  static constexpr std::string_view kRoot = "vsmtags";
  struct Reader : CReadTagsXML {
    TagGroupList Take() { return TagGroupList(DetachTagGroupHead()); }
  };
  struct Writer : CWriteTagsXML {
    Writer(const TagGroupList& groups, const SaveOptions&) { SetTagGroupHead(groups.get()); }
  };
};

template <>
struct Document<ToolbarBands> : SingleDocument {
  static constexpr std::string_view kRoot = "toolbars";
  struct Reader : CReadVosmereXML {
    ToolbarBands Take() { return ToolbarBands(static_cast<CTBarBandInfo*>(DetachData())); }
  };
  struct Writer : CWriteToolbarXML {
    Writer(const ToolbarBands& bands, const SaveOptions&) { SetTBarBandInfo(bands.get()); }
  };
};

}  // namespace detail

/// The types that can be loaded and saved: Tree (OPML), Collection (RSS), ColctList,
/// ColctItemNameList, ColctProfile, FtpSiteList, Notification, PageData, EnginePool, TagGroupList,
/// ToolbarBands.
template <class Kind>
concept DocumentKind = requires {
  detail::Document<Kind>::kRoot;
};

}  // namespace vosmere
