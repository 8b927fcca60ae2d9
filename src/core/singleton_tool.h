// The DOM tool for single children (a Desc, an Extrinsics, a Link): each has its place among
// its neighbours, and a new one replaces the old or goes right behind the neighbours before it.
#pragma once

#include "core/xml_dom_tool.h"

namespace qvr {

class SingletonTool : public CXMLDOMTool {
public:
    using CXMLDOMTool::CXMLDOMTool;

    // Replaces the child that `xpath` selects by `newChild`; `oldChild` receives a wrapper of the
    // old one, which leaves without parent. S_FALSE when nothing is selected; E_INVALIDARG
    // without catalog.
    HRESULT replaceSingleton(IQVRCatalogObject* catalog, IQVRCatalogObject* parent,
                             const String& xpath, IQVRCatalogObject* newChild,
                             Ref<IQVRCatalogObject>* oldChild);
    // Inserts `newChild` right behind the child that `xpath` selects, or first if none is.
    // E_INVALIDARG without catalog.
    HRESULT insertSingletonAfter(IQVRCatalogObject* catalog, IQVRCatalogObject* parent,
                                 const String& xpath, IQVRCatalogObject* newChild,
                                 Ref<IQVRCatalogObject>* inserted);
    // Inserts `newChild` as the first child. E_INVALIDARG without catalog.
    HRESULT insertSingletonFirst(IQVRCatalogObject* catalog, IQVRCatalogObject* parent,
                                 IQVRCatalogObject* newChild, Ref<IQVRCatalogObject>* inserted);

private:
    // The road of both insertions: behind `predecessor`'s selection, or first.
    HRESULT placeSingleton(IQVRCatalogObject* catalog, IQVRCatalogObject* parent,
                           const String* predecessor, IQVRCatalogObject* newChild,
                           Ref<IQVRCatalogObject>* inserted);
};

} // namespace qvr
