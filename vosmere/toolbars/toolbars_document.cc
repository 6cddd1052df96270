// The toolbar document: its writer, then its reader.
#include "vosmere/toolbars/toolbars_document.h"

#include <memory>
#include <new>

#include "vosmere/xml/internal/namespaces.h"
#include "vosmere/xml/item_chain.h"
#include "vosmere/xml/reader_scopes.h"

namespace vosmere {

// Writing.

CWriteToolbarXML::~CWriteToolbarXML() = default;

bool CWriteToolbarXML::FillData() {
  if (!bands_) return false;
  BeginDocument();
  AddHead();
  {
    const SynchGuard guard(*bands_);
    for (const auto* cell = bands_->GetRBandInfoItemHead(); cell; cell = cell->next)
      FillBANDINFOToBuffer(cell->data);
  }
  AddTail();
  return true;
}

// Intended: the file begins its root element after a blank, as it always has.
void CWriteToolbarXML::AddHead() {
  Put(" <toolbars version=\"1.0\" xmlns=\"" VOSMERE_NAMESPACE_TOOLBAR "\">\r\n");
}

void CWriteToolbarXML::AddTail() {
  Put("</toolbars>");
}

void CWriteToolbarXML::LoseOf(const TBARBANDINFO& band) {
  const TBARBANDINFO plain;
  const bool isPlaceWritten = band.enabled && band.hasContainerData;
  LosesOf(nullptr, band.title);
  LoseIf(!band.enabled && !band.visible, "visible is lost");
  LoseIf(band.hasContainerData && !isPlaceWritten, "hasPlace is lost");
  if (isPlaceWritten) return;
  LoseIf(band.index != plain.index, "index is lost");
  LoseIf(band.style != plain.style, "style is lost");
  LoseIf(band.width != plain.width, "width is lost");
}

void CWriteToolbarXML::FillBANDINFOToBuffer(TBARBANDINFO* band) {
  LoseOf(*band);
  if (!band->enabled)
    Put("<toolbar status=\"disabled\">");
  else if (band->visible)
    Put("<toolbar status=\"enabled\" visible=\"true\">");
  else
    Put("<toolbar status=\"enabled\" visible=\"false\">");
  PutElementUnlessEmpty<"title">(band->title);
  PutElementUnlessEmpty<"clsid">(band->clsid);
  if (band->enabled && band->hasContainerData) {
    Put("<rebar index=\"");
    PutNumber(band->index);
    Put("\" style=\"");
    PutNumber(band->style);
    Put("\" width=\"");
    PutNumber(band->width);
    Put("\" />");
  }
  Put("</toolbar>\r\n");
}

// Reading.

namespace {

using namespace xml;

struct Bands {
  std::unique_ptr<CTBarBandInfo> bands{new CTBarBandInfo};
  TBARBANDINFO* band = nullptr;  // the band whose element is being read, or null

  void Begin() {
    // The defaults, for everything that the element does not mention.
    const TBARBANDINFO unsaid;
    band = bands->AddBandInfoCopy(&unsaid);
    if (!band) throw std::bad_alloc();
  }
  void End() { band = nullptr; }
};
enum Scope : unsigned { kBands = 1, kBand = 2 };

void Enabled(TBARBANDINFO& band, const WChar* value) {
  band.enabled = BeginsWithNoCase(WideView(value), "enabled");
}
void Visible(TBARBANDINFO& band, const WChar* value) {
  band.visible = BeginsWithNoCase(WideView(value), "true");
}
bool FitsEnabled(const WChar* value) {
  return IsNamed(WideView(value), "enabled") || IsNamed(WideView(value), "disabled");
}
constexpr Field<TBARBANDINFO> kBandFields[] = {
    {BeginningWith("status"), Enabled, FitsEnabled},
    {BeginningWith("visible"), Visible, FitsTruth},
};

template <auto Number>
void NumberIn(TBARBANDINFO& band, const WChar* value) {
  band.*Number = NumberFromText(value);
}
constexpr Field<TBARBANDINFO> kRebarFields[] = {
    {"index", NumberIn<&TBARBANDINFO::index>, FitsNumber},
    {"style", NumberIn<&TBARBANDINFO::style>, FitsNumber},
    {"width", NumberIn<&TBARBANDINFO::width>, FitsNumber},
};

void BeginBand(Bands& bands, const Element& element) {
  BeginItem(bands, element);
  AttributesTo<&Bands::band, kBandFields>(bands, element);
}

void ReadRebar(Bands& bands, const Element& element) {
  if (!bands.band) return;
  bands.band->hasContainerData = true;
  AttributesTo<&Bands::band, kRebarFields>(bands, element);
}

constexpr ScopedElement<Bands> kElements[] = {
    {kAnywhere, "toolbars", EndItem, kBands},
    {kAnywhere, "toolbar", BeginBand, kBand, EndItem},
    {kBand, "title", TextTo<&Bands::band, &TBARBANDINFO::SetTitle>},
    {kBand, "clsid", TextTo<&Bands::band, &TBARBANDINFO::SetClsid>},
    {kBand, "rebar", ReadRebar},
};

}  // namespace

CReadVosmereXML::~CReadVosmereXML() = default;

void CReadVosmereXML::InvokeParser(XmlNode root) {
  CTBarBandInfo* read = nullptr;
  if (IsRootNamed(root, "toolbars")) {
    Bands bands;
    ReadChildren(kElements, bands, Reported(root), kBands);
    read = bands.bands.release();
  }
  SetData(read);
}

}  // namespace vosmere
