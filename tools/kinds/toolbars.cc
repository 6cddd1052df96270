// The layout of the toolbar bands.
#include "vosmere/toolbars/toolbars_document.h"

#include <iterator>

#include "tools/kind.h"
#include "tools/kinds/items.h"

namespace vosmere::tool {
namespace {

Record BandContent(const TBARBANDINFO& band) {
  Record record{"toolbar"};
  record.Add("name", TextOf(band.title));
  record.Add("clsid", TextOf(band.clsid), kOnLine);
  record.Add("enabled", band.enabled, kOnLine);
  record.Add("visible", band.visible);
  record.Add("hasPlace", band.hasContainerData);
  record.Add("index", band.index);
  record.Add("style", band.style);
  record.Add("width", band.width);
  return record;
}

Record BandsContent(CTBarBandInfo* bands) {
  Record record{"toolbars"};
  AddChildren<BandContent>(record, bands->GetRBandInfoItemHead());
  return record;
}

CTBarBandInfo* Detach(CReadVosmereXML& reader) {
  return static_cast<CTBarBandInfo*>(reader.DetachData());
}

using LoadedBands = LoadedAs<std::unique_ptr<CTBarBandInfo>, BandsContent, CWriteToolbarXML,
                             &CWriteToolbarXML::SetTBarBandInfo>;

constexpr Word kWords[] = {
    {"", "toolbars", "version"},
    {"*", "toolbar", "status*(enabled|disabled) visible*?", true},
    {"toolbar", "title", "="},
    {"toolbar", "clsid", "="},
    {"toolbar", "rebar", "index# style# width#"},
};

void Inspect(const XmlNode& element, std::string_view name, std::string_view scope,
             const Report& report) {
  InspectNesting(name, scope, report);
  const std::size_t length = element.Text().view().size;
  if (name == "title" && length >= std::size(TBARBANDINFO().title)) report("a long title is cut");
  if (name == "clsid" && length >= std::size(TBARBANDINFO().clsid)) report("a long clsid is cut");
}

constexpr Count kCounts[] = {{"toolbar", "toolbars"}, {"enabled", "enabled"}};

}  // namespace

const Kind kToolbars = {"toolbars",
                        "toolbars",
                        kCounts,
                        {.words = kWords, .inspect = Inspect},
                        LoadedBands::Load<CReadVosmereXML, Detach>};

}  // namespace vosmere::tool
