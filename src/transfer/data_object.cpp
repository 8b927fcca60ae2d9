#include "transfer/data_object.h"

#include <cstring>
#include <memory>

#include <qvr/dom.h>

#include "core/object_factory.h"
#include "platform/com/failure.h"
#include "transfer/clipboard_formats.h"

namespace qvr {
namespace {

constexpr std::uint32_t renderedMedia = TYMED_HGLOBAL | TYMED_ISTREAM;

HRESULT writeAll(IStream* stream, const void* bytes, std::size_t size) {
    std::uint32_t written = 0;
    HRESULT hr = stream->Write(bytes, static_cast<std::uint32_t>(size), &written);
    if (FAILED(hr)) return hr;
    return written == size ? S_OK : STG_E_MEDIUMFULL;
}

// The bytes a stream holds from its start, its position left at the end.
HRESULT streamBytes(IStream* stream, std::vector<unsigned char>* bytes) {
    STATSTG stat;
    HRESULT hr = stream->Stat(&stat, 0);
    if (FAILED(hr) || FAILED(hr = stream->Seek(0, STREAM_SEEK_SET, nullptr))) return hr;
    bytes->resize(static_cast<std::size_t>(stat.cbSize));
    std::uint32_t read = 0;
    return bytes->empty()
               ? S_OK
               : stream->Read(bytes->data(), static_cast<std::uint32_t>(bytes->size()), &read);
}

class CAdviseEnumerator final : public ObjectBase<IEnumSTATDATA> {
public:
    explicit CAdviseEnumerator(std::vector<STATDATA> data) : data_(std::move(data)) {}
    HRESULT Next(std::uint32_t count, STATDATA* data, std::uint32_t* fetched) override {
        if (!data && count > 0) return E_POINTER;
        std::uint32_t given = 0;
        while (given < count && next_ < data_.size()) data[given++] = data_[next_++];
        if (fetched) *fetched = given;
        return given == count ? S_OK : S_FALSE;
    }
    HRESULT Skip(std::uint32_t count) override {
        const bool all = next_ + count <= data_.size();
        next_ = all ? next_ + count : data_.size();
        return all ? S_OK : S_FALSE;
    }
    HRESULT Reset() override {
        next_ = 0;
        return S_OK;
    }

private:
    std::vector<STATDATA> data_;
    std::size_t next_ = 0;
};

} // namespace

HRESULT createDataObject(IQVRCatalogObject* object, Ref<IDataObject>* dataObject) {
    if (!dataObject) return E_POINTER;
    *dataObject = nullptr;
    if (!object) return E_INVALIDARG;
    return guarded([&] {
        *dataObject = makeObject<CQVRCatalogDataObjectImpl>(object);
        return S_OK;
    });
}

HRESULT CQVRCatalogDataObjectImpl::QueryGetData(const FORMATETC* format) {
    if (!format) return E_INVALIDARG;
    if (format->lindex != -1) return DV_E_LINDEX;
    if ((format->tymed & renderedMedia) == 0) return DV_E_TYMED;
    const TransferFormats& formats = transferFormats();
    const CLIPFORMAT f = format->cfFormat;
    // Plain text is offered here, Unicode text is not: the reverse of the listed table.
    if (f != formats.nodeType && f != formats.xml && f != formats.localProxy &&
        f != formats.remoteProxy && f != formats.localObject && f != formats.objectBase &&
        f != CF_TEXT)
        return DV_E_FORMATETC;
    if (format->dwAspect != DVASPECT_CONTENT) return DV_E_DVASPECT;
    return S_OK;
}

HRESULT CQVRCatalogDataObjectImpl::GetData(const FORMATETC* format, STGMEDIUM* medium) {
    if (!format) return E_INVALIDARG;
    if (!medium) return E_POINTER;
    const HRESULT result = QueryGetData(format);
    if (FAILED(result)) return result;
    return guarded([&] {
        Ref<IStream> stream;
        // A rendering that fails leaves the medium as it came; the answer stays that of the
        // query.
        if (CreateStreamOnHGlobal(&stream) != S_OK || render(format->cfFormat, stream) != S_OK)
            return result;
        if (format->tymed == TYMED_HGLOBAL) {
            // The memory is the stream's, and the stream goes at the end of this call: the
            // handle cannot be handed out.
            medium->tymed = TYMED_HGLOBAL;
            medium->hGlobal = nullptr;
        } else {
            stream->Seek(0, STREAM_SEEK_SET, nullptr);
            medium->tymed = TYMED_ISTREAM;
            medium->pstm = stream.get();
            medium->pstm->AddRef();
        }
        medium->pUnkForRelease = nullptr;
        return result;
    });
}

HRESULT CQVRCatalogDataObjectImpl::GetDataHere(const FORMATETC* format, STGMEDIUM* medium) {
    if (!format) return E_INVALIDARG;
    if (!medium) return E_POINTER;
    return guarded([&] {
        if (medium->tymed == TYMED_ISTREAM) {
            if (!medium->pstm) return E_INVALIDARG;
            return render(format->cfFormat, medium->pstm);
        }
        if (medium->tymed != TYMED_HGLOBAL) return DV_E_TYMED;
        if (!medium->hGlobal) return E_INVALIDARG;
        // Written over the caller's memory from its start.
        Ref<IStream> stream;
        HRESULT hr = CreateStreamOnHGlobal(&stream);
        if (hr != S_OK) return hr;
        if (!medium->hGlobal->bytes.empty())
            writeAll(stream, medium->hGlobal->bytes.data(), medium->hGlobal->bytes.size());
        stream->Seek(0, STREAM_SEEK_SET, nullptr);
        if ((hr = render(format->cfFormat, stream)) != S_OK) return hr;
        return streamBytes(stream, &medium->hGlobal->bytes);
    });
}

HRESULT CQVRCatalogDataObjectImpl::render(CLIPFORMAT format, IStream* stream) {
    const TransferFormats& formats = transferFormats();
    if (format == formats.nodeType) {
        QVRObjectType type;
        HRESULT hr = object_->get_objectType(&type);
        if (FAILED(hr)) return hr;
        const auto number = static_cast<std::uint32_t>(type);
        const unsigned char bytes[4] = {
            static_cast<unsigned char>(number), static_cast<unsigned char>(number >> 8),
            static_cast<unsigned char>(number >> 16), static_cast<unsigned char>(number >> 24)};
        return writeAll(stream, bytes, 4);
    }
    if (format == formats.xml || format == CF_TEXT || format == CF_UNICODETEXT)
        return renderText(format, stream);
    if (format == formats.localProxy)
        return CoMarshalInterface(stream, IQVRCatalogObject::iid, object_, MSHCTX_LOCAL,
                                  MSHLFLAGS_NORMAL);
    if (format == formats.remoteProxy)
        return CoMarshalInterface(stream, IQVRCatalogObject::iid, object_, MSHCTX_DIFFERENTMACHINE,
                                  MSHLFLAGS_NORMAL);
    if (format == formats.localObject) {
        // What lies at the object's address, which means something in this process only.
        unsigned char bytes[8];
        std::memcpy(bytes, static_cast<const void*>(object_.get()), sizeof bytes);
        return writeAll(stream, bytes, sizeof bytes);
    }
    if (format == formats.objectBase) return renderObjectBase();
    return DV_E_FORMATETC;
}

// The text of the object's element as UTF-16, of which only as many bytes are written as the
// text has characters: the first half of it. Readers of these formats expect exactly that.
HRESULT CQVRCatalogDataObjectImpl::renderText(CLIPFORMAT format, IStream* stream) {
    Ref<IXMLDOMElement> element;
    HRESULT hr = object_->get_domNode(&element);
    if (hr != S_OK) return FAILED(hr) ? hr : E_FAIL;
    String xml;
    if ((hr = element->get_xml(&xml)) != S_OK) return FAILED(hr) ? hr : E_FAIL;
    const std::u16string text = toUtf16(xml.view());
    // Plain text ends at the first null character, the others at the text's end.
    const std::size_t characters =
        format == CF_TEXT ? std::char_traits<char16_t>::length(text.c_str()) : text.size();
    std::vector<unsigned char> bytes;
    bytes.reserve(text.size() * 2);
    for (const char16_t c : text) {
        bytes.push_back(static_cast<unsigned char>(c));
        bytes.push_back(static_cast<unsigned char>(c >> 8));
    }
    return writeAll(stream, bytes.data(), characters);
}

// Meant to give the base address of the object's catalog or table. The root is asked for the
// interface of its class rather than one of its interfaces, which no object answers: the format
// is offered and yields nothing.
HRESULT CQVRCatalogDataObjectImpl::renderObjectBase() {
    QVRObjectType type;
    HRESULT hr = object_->get_objectType(&type);
    if (FAILED(hr)) return hr;
    if (type != qvrCatalog && type != qvrTable) {
        Ref<IQVRCatalogObject> catalog;
        if (object_->get_catalog(&catalog) != S_OK || !catalog ||
            FAILED(catalog->get_objectType(&type)) || (type != qvrCatalog && type != qvrTable))
            return E_FAIL;
    }
    return E_NOINTERFACE;
}

HRESULT CQVRCatalogDataObjectImpl::EnumFormatEtc(std::uint32_t direction,
                                                 Ref<IEnumFORMATETC>* formats) {
    return enumListedFormats(direction, formats);
}

HRESULT CQVRCatalogDataObjectImpl::DAdvise(const FORMATETC* format, std::uint32_t flags,
                                           IAdviseSink* sink, std::uint32_t* connection) {
    return guarded([&] {
        if (!adviseHolder_) adviseHolder_ = std::make_unique<AdviseHolder>();
        if (!format || !sink || !connection) return E_INVALIDARG;
        *connection = ++adviseHolder_->lastConnection;
        adviseHolder_->advises.push_back({*format, flags, Ref<IAdviseSink>(sink), *connection});
        return S_OK;
    });
}

HRESULT CQVRCatalogDataObjectImpl::DUnadvise(std::uint32_t connection) {
    if (!adviseHolder_) return OLE_E_NOCONNECTION;
    auto& advises = adviseHolder_->advises;
    for (auto at = advises.begin(); at != advises.end(); ++at)
        if (at->connection == connection) {
            advises.erase(at);
            return S_OK;
        }
    return OLE_E_NOCONNECTION;
}

HRESULT CQVRCatalogDataObjectImpl::EnumDAdvise(Ref<IEnumSTATDATA>* advises) {
    if (!advises) return E_POINTER;
    *advises = nullptr;
    if (!adviseHolder_) return E_FAIL;
    return guarded([&] {
        std::vector<STATDATA> data;
        for (const Advise& advise : adviseHolder_->advises)
            data.push_back({advise.format, advise.flags, advise.sink.get(), advise.connection});
        *advises = makeObject<CAdviseEnumerator>(std::move(data));
        return S_OK;
    });
}

} // namespace qvr
