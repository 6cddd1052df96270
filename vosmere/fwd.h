// The names of the public classes, for headers that only pass pointers and references to them.
#pragma once

#include "vosmere/base/types.h"

namespace vosmere {

// base
template <class T>
struct TList;
class CKQSynch;
class CVSMGlobal;
struct DocumentError;
struct DocumentLoss;
struct FilePiece;
struct WideView;

// text
class CBaseTool;
class CChunkBuffer;
class CEncodingTool;
class CKQTime;
class CMD5Digest;
class CReadFile;
class CUnicodeTool;
class CWriteFile;
struct Chunk;
struct DateReading;
struct DisplayDate;

// tree
class CBaseNode;
class CFolderNode;
class CNameValuePair;
class CNodeStat;
class CProperties;
class CSortRList;
class CSortRNode;
class CUrlNode;
class CUrlProp;
class RNTool;
class TreeObserver;
struct RNode;
enum tagNODETYPE : LONG;
enum tagVSMITEMFILETYPE : LONG;
enum tagVSMITEMTYPE : LONG;

// sched
class CBaseThread;
class CEventItem;
class CScheduleThread;
class CTimeEvent;
class CTimeEventQueue;
class CTimeTest;

// xml
class CParseXML;
class CReadXML;
class CWriteItems;
class CWriteXML;
class XmlNode;

// net
class CInetSynch;
class CNetBase;
class CNetUploadFile;

// collections
class CColctExData;
class CColctItemID;
class CColctNetData;
class CColctNode;
class CParseOPML;
class CRColctTool;
class CReadBkmarkXML;
class CReadColctExData;
class CReadColctItemID;
class CReadColctListXML;
class CReadColctTreeOPML;
class CWriteColctExData;
class CWriteColctItemID;
class CWriteColctListXML;
class CWriteColctRSS;
class CWriteColctTreeOPML;
struct RColctExData;
struct RColctItem;
struct RColctItemID;
enum tagCOLCTTYPE : LONG;

// engines
class CEngineNode;
class CEnginePool;
class CReadSEngineXML;
class CWriteSEngineXML;
struct REngineItem;

// tags
class CReadTagsXML;
class CSortRTagItem;
class CTagGroup;
class CTagItem;
class CTagStore;
class CWriteTagsXML;

// tabs
class CHashtable;
class CTabUrlData;
class CTabUrlItem;
class CTranslationItem;
class CUrlMapItem;

// toolbars
class CReadVosmereXML;
class CTBarBandInfo;
class CWriteToolbarXML;
struct TBARBANDINFO;

// pages
class CPageData;
class CReadPageDataXML;
class CWriteNoteHtml;
class CWritePageDataXML;

// ftp
class CFtpConBase;
class CFtpWebAddress;
class CReadFtpSiteXML;
class CWriteFtpSiteXML;

// notify
class CReadVSMNotify;
class CVSMNotifyMsg;
class CWriteVSMNotifyMsg;

// favorites
class CFavorites;
struct CFavorite;
struct COrderRecord;
struct FavoritesReport;

// exchange
class CWriteBookmarks;
class CWriteLinks;
struct DocumentRepair;
struct ImportedItems;

// storage
class TreeStore;
struct FileMark;
struct StoreOptions;
struct StoredCheckpoint;

}  // namespace vosmere
