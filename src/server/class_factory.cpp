// The module's class objects: one factory for each class that can be made from outside. The
// factories live as long as the library and do not keep it loaded, so that DllCanUnloadNow counts
// only the objects and the locks of the clients.
#include <qvr/catalog.h>
#include <qvr/error_info.h>
#include <qvr/server.h>
#include <qvr/table.h>

#include "platform/com/failure.h"
#include "transfer/clipboard_formats.h"

namespace qvr {
namespace {

// The interfaces a made object is asked for by id: those every root answers and its own.
template <class Root>
Ref<IUnknown> asInterface(const Ref<Root>& root, const IID& interfaceId) {
    if (interfaceId == IUnknown::iid || interfaceId == IQVRCatalogObject::iid ||
        interfaceId == Root::iid)
        return Ref<IUnknown>(static_cast<IQVRCatalogObject*>(root.get()));
    if (interfaceId == ISupportErrorInfo::iid) return query<ISupportErrorInfo>(root);
    return nullptr;
}

template <class Root, HRESULT (*create)(Ref<Root>*)>
class ClassFactory final : public IClassFactory {
public:
    // Held by the module for its whole life: counting changes nothing.
    std::uint32_t AddRef() override { return 2; }
    std::uint32_t Release() override { return 1; }

    HRESULT CreateInstance(IUnknown* outer, const IID& interfaceId,
                           Ref<IUnknown>* object) override {
        if (!object) return E_POINTER;
        *object = nullptr;
        // The objects of the model keep one count for all their interfaces: they cannot be
        // parts of another object.
        if (outer) return CLASS_E_NOAGGREGATION;
        return guarded([&] {
            Ref<Root> root;
            HRESULT hr = create(&root);
            if (hr != S_OK) return hr;
            *object = asInterface(root, interfaceId);
            return *object ? S_OK : E_NOINTERFACE;
        });
    }
    HRESULT LockServer(VARIANT_BOOL lock) override {
        return qvr::LockServer(lock != VARIANT_FALSE);
    }
};

using CatalogFactory = ClassFactory<IQVRCatalog, &CreateCatalog>;
using TableFactory = ClassFactory<IQVRCatalogTable, &CreateCatalogTable>;

// Made on the first request; the language makes that once, whichever threads ask.
IClassFactory* catalogFactory() {
    static CatalogFactory factory;
    return &factory;
}
IClassFactory* tableFactory() {
    static TableFactory factory;
    return &factory;
}

// The model's formats are registered when the library is loaded, so that their numbers come
// first among the process's registered formats and stay the same for its whole life.
[[maybe_unused]] const TransferFormats& registeredFormats = transferFormats();

} // namespace

HRESULT DllGetClassObject(const CLSID& classId, const IID& interfaceId, Ref<IUnknown>* object) {
    if (!object) return E_POINTER;
    *object = nullptr;
    IClassFactory* factory = classId == CLSID_QVRCatalog        ? catalogFactory()
                             : classId == CLSID_QVRCatalogTable ? tableFactory()
                                                                : nullptr;
    if (!factory) return CLASS_E_CLASSNOTAVAILABLE;
    if (!(interfaceId == IUnknown::iid || interfaceId == IClassFactory::iid)) return E_NOINTERFACE;
    *object = Ref<IUnknown>(factory);
    return S_OK;
}

HRESULT DllCanUnloadNow() {
    return CanUnloadNow();
}

} // namespace qvr
