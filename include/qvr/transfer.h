// Handing objects to other places: the data object, its clipboard formats, and the marshalling of
// an object into a packet of bytes that another process can take in.
//
//   Ref<IDataObject> data;
//   part->getDataObject(&data);                 // offered in the model's formats and as text
//   Ref<IQVRCatalogObject> copy;
//   otherCatalog->objectFromDataObject(data, &copy);
//   chapter->appendChild(copy, &inserted);      // a copy of the part, its table with it
//
// The names, fields and operation order are those of the desktop platform's transfer interfaces,
// so that code written against them reads the same here.
#pragma once

#include <cstdint>
#include <vector>

#include <qvr/com.h>
#include <qvr/stream.h>

namespace qvr {

class IQVRCatalogObject;

using CLIPFORMAT = std::uint16_t;

// The predefined formats; registered names get numbers from 0xC000 upward.
constexpr CLIPFORMAT CF_TEXT = 1;
constexpr CLIPFORMAT CF_UNICODETEXT = 13;

enum TYMED : std::uint32_t {
    TYMED_NULL = 0,
    TYMED_HGLOBAL = 1,
    TYMED_FILE = 2,
    TYMED_ISTREAM = 4,
    TYMED_ISTORAGE = 8,
};

enum DVASPECT : std::uint32_t {
    DVASPECT_CONTENT = 1,
    DVASPECT_THUMBNAIL = 2,
    DVASPECT_ICON = 4,
    DVASPECT_DOCPRINT = 8,
};

enum DATADIR : std::uint32_t {
    DATADIR_GET = 1,
    DATADIR_SET = 2,
};

constexpr HRESULT OLE_E_NOCONNECTION = makeStatus(0x80040004);
constexpr HRESULT CO_E_OBJNOTCONNECTED = makeStatus(0x800401FD);
constexpr HRESULT RPC_E_INVALID_DATA = makeStatus(0x8001010F);
constexpr HRESULT REGDB_E_CLASSNOTREG = makeStatus(0x80040154);

// A block of memory handed over by handle: here the bytes themselves.
struct GlobalMemory {
    std::vector<unsigned char> bytes;
};
using HGLOBAL = GlobalMemory*;

struct DVTARGETDEVICE; // no target device is ever used: always null

struct FORMATETC {
    CLIPFORMAT cfFormat = 0;
    DVTARGETDEVICE* ptd = nullptr;
    std::uint32_t dwAspect = DVASPECT_CONTENT;
    std::int32_t lindex = -1;
    std::uint32_t tymed = TYMED_ISTREAM;
};

// The medium of a rendering. The holder of a filled medium gives it back by ReleaseStgMedium.
struct STGMEDIUM {
    std::uint32_t tymed = TYMED_NULL;
    HGLOBAL hGlobal = nullptr; // for TYMED_HGLOBAL
    IStream* pstm = nullptr;   // for TYMED_ISTREAM: one reference, owned by the medium
    IUnknown* pUnkForRelease = nullptr;
};
QVR_API void ReleaseStgMedium(STGMEDIUM* medium);

class QVR_API IEnumFORMATETC : public IUnknown {
public:
    QVR_INTERFACE_ID(IEnumFORMATETC)
    virtual HRESULT Next(std::uint32_t count, FORMATETC* formats, std::uint32_t* fetched) = 0;
    virtual HRESULT Skip(std::uint32_t count) = 0;
    virtual HRESULT Reset() = 0;
    virtual HRESULT Clone(Ref<IEnumFORMATETC>* copy) = 0;
};

// Told when the data of a data object changes; a data object of the model never changes.
class QVR_API IAdviseSink : public IUnknown {
public:
    QVR_INTERFACE_ID(IAdviseSink)
    virtual void OnDataChange(const FORMATETC& format, const STGMEDIUM& medium) = 0;
};

struct STATDATA {
    FORMATETC formatetc;
    std::uint32_t advf = 0;
    IAdviseSink* pAdvSink = nullptr; // not counted: valid while the connection stands
    std::uint32_t dwConnection = 0;
};

class QVR_API IEnumSTATDATA : public IUnknown {
public:
    QVR_INTERFACE_ID(IEnumSTATDATA)
    virtual HRESULT Next(std::uint32_t count, STATDATA* data, std::uint32_t* fetched) = 0;
    virtual HRESULT Skip(std::uint32_t count) = 0;
    virtual HRESULT Reset() = 0;
};

class QVR_API IDataObject : public IUnknown {
public:
    QVR_INTERFACE_ID(IDataObject)
    virtual HRESULT GetData(const FORMATETC* format, STGMEDIUM* medium) = 0;
    virtual HRESULT GetDataHere(const FORMATETC* format, STGMEDIUM* medium) = 0;
    virtual HRESULT QueryGetData(const FORMATETC* format) = 0;
    virtual HRESULT GetCanonicalFormatEtc(const FORMATETC* in, FORMATETC* out) = 0;
    virtual HRESULT SetData(const FORMATETC* format, STGMEDIUM* medium, VARIANT_BOOL release) = 0;
    virtual HRESULT EnumFormatEtc(std::uint32_t direction, Ref<IEnumFORMATETC>* formats) = 0;
    virtual HRESULT DAdvise(const FORMATETC* format, std::uint32_t flags, IAdviseSink* sink,
                            std::uint32_t* connection) = 0;
    virtual HRESULT DUnadvise(std::uint32_t connection) = 0;
    virtual HRESULT EnumDAdvise(Ref<IEnumSTATDATA>* advises) = 0;
};

// The number of a named format, the same for the life of the process; 0 for a null or empty
// name. Names are told apart without regard to case.
QVR_API CLIPFORMAT RegisterClipboardFormat(const char* name);

// A new empty stream in memory.
QVR_API HRESULT CreateStreamOnHGlobal(Ref<IStream>* stream);

// Marshalling. A packet holds the process that wrote it, a token that keeps the object alive in
// that process until the packet is released, and the object's text (with the text and address
// of each open table below a part or chapter), so that it can be taken in anywhere: in the
// process that wrote it, unmarshalling gives the object itself; in another it gives a copy that
// can be inserted into a catalog there. Destination contexts and flags are accepted as the
// platform's are and change nothing.
enum MSHCTX : std::uint32_t {
    MSHCTX_LOCAL = 0,
    MSHCTX_NOSHAREDMEM = 1,
    MSHCTX_DIFFERENTMACHINE = 2,
    MSHCTX_INPROC = 3,
};
enum MSHLFLAGS : std::uint32_t {
    MSHLFLAGS_NORMAL = 0,
    MSHLFLAGS_TABLESTRONG = 1,
    MSHLFLAGS_TABLEWEAK = 2,
};
QVR_API HRESULT CoMarshalInterface(IStream* stream, const IID& interfaceId, IUnknown* object,
                                   std::uint32_t context, std::uint32_t flags);
// A damaged, cut or unknown packet gives RPC_E_INVALID_DATA, a packet whose object is gone
// CO_E_OBJNOTCONNECTED, each with a message in the error info.
QVR_API HRESULT CoUnmarshalInterface(IStream* stream, const IID& interfaceId,
                                     Ref<IUnknown>* object);
// Lets the object of a packet go in the process that wrote it, without reading it.
QVR_API HRESULT CoReleaseMarshalData(IStream* stream);

} // namespace qvr
