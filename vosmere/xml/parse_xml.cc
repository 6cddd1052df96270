// The walk over a parsed XML document.
#include "vosmere/xml/parse_xml.h"

namespace vosmere {
namespace {

/// Raises the level for its lifetime, so that it is lowered again when a hook throws.
class Level {
 public:
  explicit Level(LONG& depth) : depth_(depth) { ++depth_; }
  ~Level() { --depth_; }
  Level(const Level&) = delete;
  Level& operator=(const Level&) = delete;

 private:
  LONG& depth_;
};

}  // namespace

CParseXML::~CParseXML() = default;

void* CParseXML::DetachData() {
  return nullptr;
}

void CParseXML::OnEnterNode(XmlNode) {}

void CParseXML::OnLeaveNode(XmlNode) {}

void CParseXML::GoThroughChildNodes(XmlNode node) {
  const Level level(depth_);
  OnEnterNode(node);
  if (node.Type() == kXmlElement) ProcessElementNode(node);
  for (XmlNode child = node.FirstChild(); child; child.Advance()) GoThroughChildNodes(child);
  OnLeaveNode(node);
}

}  // namespace vosmere
