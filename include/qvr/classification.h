// Classification and extrinsics: a part's classes by domain, and the named extra data that a
// chapter, a part, the catalog, a table or a column can carry.
//
// `Classifications` holds one `Class` per domain and never gives up its last one. `Extrinsics`
// holds `Extrinsic` elements side by side (two of one name may stand together) and can be
// emptied. An extrinsic holds either a text or a copy of any element of the catalog.
#pragma once

#include <qvr/object.h>

namespace qvr {

// A classification under one system: the domain is the key, the text the value. Takes no
// children.
class QVR_API IQVRCatalogClass : public IQVRCatalogObject {
public:
    QVR_INTERFACE_ID(IQVRCatalogClass)

    virtual HRESULT get_domain(String* domain) = 0;
    // Not held by a sibling ("A child with the same id already exists."); empty or null removes
    // the domain.
    virtual HRESULT put_domain(const String& domain) = 0;
    virtual HRESULT get_value(String* value) = 0;
    virtual HRESULT put_value(const String& value) = 0;
};

// Classes, one per domain. Another kind of child: "You can only append childs from type Class.".
class QVR_API IQVRCatalogClassifications : public IQVRCatalogObject {
public:
    QVR_INTERFACE_ID(IQVRCatalogClassifications)
};

// Named extra data: a text, or a copy of an element. Each writer replaces what was held. Its key
// is its name. Takes no children.
class QVR_API IQVRCatalogExtrinsic : public IQVRCatalogObject {
public:
    QVR_INTERFACE_ID(IQVRCatalogExtrinsic)

    virtual HRESULT get_name(String* name) = 0;
    // A name that a sibling has is accepted.
    virtual HRESULT put_name(const String& name) = 0;
    // The held element as an object: S_FALSE when nothing is held, E_FAIL when a text is.
    virtual HRESULT get_content(Ref<IQVRCatalogObject>* content) = 0;
    // Holds a deep copy of `content`'s element; `content` stays where it is. Null: E_INVALIDARG.
    virtual HRESULT putref_content(IQVRCatalogObject* content) = 0;
    // The text held, which takes in the text of a held element.
    virtual HRESULT get_value(String* value) = 0;
    virtual HRESULT put_value(const String& value) = 0;
};

// Extrinsics side by side, without a key. Another kind of child: "You can only append a
// Extrinsic as child of this object.".
class QVR_API IQVRCatalogExtrinsics : public IQVRCatalogObject {
public:
    QVR_INTERFACE_ID(IQVRCatalogExtrinsics)
};

} // namespace qvr
