// Writes and reads the document that stores a pool of search engines.
#pragma once

#include "vosmere/base/export.h"
#include "vosmere/base/owned_pointer.h"
#include "vosmere/engines/engine_pool.h"
#include "vosmere/xml/read_xml.h"
#include "vosmere/xml/write_items.h"

namespace vosmere {

/// Writes a pool of search engines: its name and description and, for each engine, search type,
/// name, description, address for queries and address of the icon, each unless it is empty.
///
/// Intended: a search type of 202 code units or more is cut to 200, but one of 201 is not cut.
class VOSMERE_API CWriteSEngineXML : public CWriteItems {
 public:
  CWriteSEngineXML() = default;
  ~CWriteSEngineXML() override;

  /// The pool to write, not owned; it must outlive the writing. Without a pool the document is
  /// empty.
  void SetEnginePool(CEnginePool* pool) { pool_ = pool; }

 protected:
  bool FillData() override;

  void AddHead();
  void AddTail();
  void FillEngineNodeToBuffer(CEngineNode* engine);
  /// Writes the times of an engine, in the form that the reader understands.
  /// Intended: the document is written without them, so that a pool can be given away without
  /// revealing when its engines were used.
  void FillNodeStat(CNodeStat* stat);

 private:
  void LoseOf(const CEngineNode& engine);

  CEnginePool* pool_ = nullptr;
};

/// Reads a pool of search engines. Engines are found at any depth, whatever the root element is. A
/// document without engines and pools loads, but there is no pool.
///
/// Intended: elements of engines and of their statistics, and the attribute for the search type,
/// are recognised by the beginning of their names, case-insensitive (ASCII), because other programs
/// write them with suffixes. All other names must match exactly.
///
/// Not restored, because CWriteSEngineXML does not write it: an engine's icon text, stored site,
/// identity and statistics. An empty address becomes "about:blank", an empty search type "web".
class VOSMERE_API CReadSEngineXML : public CReadXML {
 public:
  CReadSEngineXML() = default;
  /// Frees the pool unless it was detached.
  ~CReadSEngineXML() override;

  /// Gives the pool with its engines to the caller, who frees it with CBaseNode::Delete. Null when
  /// there is none. A pool that is not detached is kept until the next document has been read.
  CEnginePool* DetachEnginePool() { return pool_.Detach(); }

 protected:
  void InvokeParser(XmlNode root) override;

 private:
  OwnedPointer<CEnginePool, FreeWith<CBaseNode::Delete>> pool_;
};

}  // namespace vosmere
