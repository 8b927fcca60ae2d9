// The data object: an object of the model offered to another place, in the model's own formats
// and as text. Each rendering reads the object as it is at that moment.
#pragma once

#include <vector>

#include <qvr/object.h>
#include <qvr/transfer.h>

#include "platform/com/object_base.h"

namespace qvr {

class CQVRCatalogDataObjectImpl final : public ObjectBase<IDataObject> {
public:
    explicit CQVRCatalogDataObjectImpl(IQVRCatalogObject* object) : object_(object) {}

    HRESULT GetData(const FORMATETC* format, STGMEDIUM* medium) override;
    HRESULT GetDataHere(const FORMATETC* format, STGMEDIUM* medium) override;
    HRESULT QueryGetData(const FORMATETC* format) override;
    HRESULT GetCanonicalFormatEtc(const FORMATETC*, FORMATETC*) override { return E_NOTIMPL; }
    // A data object of the model is read only.
    HRESULT SetData(const FORMATETC*, STGMEDIUM*, VARIANT_BOOL) override { return E_NOTIMPL; }
    HRESULT EnumFormatEtc(std::uint32_t direction, Ref<IEnumFORMATETC>* formats) override;
    // The data never changes, so an advised sink is never told anything.
    HRESULT DAdvise(const FORMATETC* format, std::uint32_t flags, IAdviseSink* sink,
                    std::uint32_t* connection) override;
    HRESULT DUnadvise(std::uint32_t connection) override;
    HRESULT EnumDAdvise(Ref<IEnumSTATDATA>* advises) override;

private:
    // Writes `format` of the object into `stream`; DV_E_FORMATETC for a format it does not know.
    HRESULT render(CLIPFORMAT format, IStream* stream);
    HRESULT renderText(CLIPFORMAT format, IStream* stream);
    HRESULT renderObjectBase();

    struct Advise {
        FORMATETC format;
        std::uint32_t flags;
        Ref<IAdviseSink> sink;
        std::uint32_t connection;
    };
    // The advise holder: made by the first DAdvise.
    struct AdviseHolder {
        std::vector<Advise> advises;
        std::uint32_t lastConnection = 0;
    };

    Ref<IQVRCatalogObject> object_;
    std::unique_ptr<AdviseHolder> adviseHolder_;
};

} // namespace qvr
