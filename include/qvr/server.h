// The module's entry points, in the platform's shape: the class objects of the two classes that
// can be made from outside, the catalog and the table, and the question whether the library may
// be unloaded. Every other object of the model is made by these two.
//
//   Ref<IUnknown> unknown;
//   DllGetClassObject(CLSID_QVRCatalog, IClassFactory::iid, &unknown);
//   Ref<IUnknown> object;
//   query<IClassFactory>(unknown)->CreateInstance(nullptr, IQVRCatalog::iid, &object);
#pragma once

#include <qvr/com.h>

namespace qvr {

using CLSID = IID;
inline constexpr CLSID CLSID_QVRCatalog{"QVRCatalog.Catalog"};
inline constexpr CLSID CLSID_QVRCatalogTable{"QVRCatalog.Table"};

class QVR_API IClassFactory : public IUnknown {
public:
    QVR_INTERFACE_ID(IClassFactory)
    // A new object, as `interfaceId`. An outer object is refused: CLASS_E_NOAGGREGATION.
    virtual HRESULT CreateInstance(IUnknown* outer, const IID& interfaceId,
                                   Ref<IUnknown>* object) = 0;
    // Keeps the library loaded (true) or lets it go again (false).
    virtual HRESULT LockServer(VARIANT_BOOL lock) = 0;
};

// The class object of `classId` as `interfaceId` (IUnknown or IClassFactory). Any class but the
// two: CLASS_E_CLASSNOTAVAILABLE.
QVR_API HRESULT DllGetClassObject(const CLSID& classId, const IID& interfaceId,
                                  Ref<IUnknown>* object);
// S_OK when no object of the library lives and no lock is held; else S_FALSE.
QVR_API HRESULT DllCanUnloadNow();

} // namespace qvr
