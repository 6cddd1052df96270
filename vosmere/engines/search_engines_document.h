#pragma once

#include "vosmere/base/export.h"
#include "vosmere/base/owned_pointer.h"
#include "vosmere/engines/engine_pool.h"
#include "vosmere/xml/read_xml.h"
#include "vosmere/xml/write_items.h"

namespace vosmere {

/// Writes a pool of search engines: its name and description, and of each engine the search type,
/// name, description, query address and icon address, where they are not empty. A search type of
/// 202 units or more is cut to 200.
class VOSMERE_API CWriteSEngineXML : public CWriteItems {
 public:
  CWriteSEngineXML() = default;
  ~CWriteSEngineXML() override;

  /// The pool to write, which must outlive the writing. Without one the document is empty.
  void SetEnginePool(CEnginePool* pool) { pool_ = pool; }

 protected:
  bool FillData() override;

  void AddHead();
  void AddTail();
  void FillEngineNodeToBuffer(CEngineNode* engine);
  /// The times of an engine, which the reader knows. Intended: the document does without them, so
  /// that pools are handed on without telling when they were used.
  void FillNodeStat(CNodeStat* stat);

 private:
  CEnginePool* pool_ = nullptr;
};

/// Reads a pool of search engines. Engines count wherever they stand, and whatever the root element
/// is; a document without any of its elements loads, and gives no pool.
///
/// Intended: the names of engines, of their types and of their statistics are recognised by how
/// they begin, in any letter case; pools written by other programs have suffixes there. All other
/// names are compared exactly.
///
/// What does not come back from a document that CWriteSEngineXML wrote, because it is not in it: an
/// engine's icon text, stored site, identity and statistics, an empty address (which becomes
/// "about:blank") and an empty search type ("web").
class VOSMERE_API CReadSEngineXML : public CReadXML {
 public:
  CReadSEngineXML() = default;
  /// Frees the pool unless it was detached.
  ~CReadSEngineXML() override;

  /// The pool, now the caller's with its engines (CBaseNode::Delete frees them); null when there is
  /// none. A pool stays until it is detached or another document has been read.
  CEnginePool* DetachEnginePool() { return pool_.Detach(); }

 protected:
  void InvokeParser(XmlNode root) override;

 private:
  OwnedPointer<CEnginePool, FreeWith<CBaseNode::Delete>> pool_;
};

}  // namespace vosmere
