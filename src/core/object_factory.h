// The factory: from an element's tag to the object of its class. Each class has one creator,
// and all creators are one template; the tag table, which lists the tags in the order in which
// they are tested, stands with the classes above the frame (server/tag_table.cpp), so that
// nothing here names a concrete class.
#pragma once

#include <string_view>

#include <qvr/dom.h>
#include <qvr/object.h>

#include "core/object_frame.h"
#include "platform/com/failure.h"
#include "platform/com/object_base.h"

namespace qvr {

using Creator = HRESULT (*)(IXMLDOMDocument* document, IXMLDOMNode* node,
                            IQVRCatalogObject* catalog, Ref<IQVRCatalogObject>* object);

// The creator of class T: a new instance around `node`, with `catalog` as its catalog link.
template <class T>
HRESULT createWrapper(IXMLDOMDocument* document, IXMLDOMNode* node, IQVRCatalogObject* catalog,
                      Ref<IQVRCatalogObject>* object) noexcept {
    return guarded([&] {
        *object = nullptr;
        Ref<T> created = makeObject<T>();
        HRESULT hr = created->attach(document, node, catalog);
        if (hr != S_OK) return hr;
        *object = created->self();
        return S_OK;
    });
}

// A new object of class T around a new element of its tag in `document`, standing in no tree,
// with `catalog` as its catalog link. The first step of every create* operation of a root.
template <class T>
HRESULT createNewWrapper(IXMLDOMDocument* document, IQVRCatalogObject* catalog,
                         Ref<T>* object) noexcept {
    return guarded([&] {
        *object = nullptr;
        Ref<T> created = makeObject<T>();
        HRESULT hr = created->attachNew(document, catalog);
        if (hr == S_OK) *object = std::move(created);
        return hr;
    });
}

// The object of `node`'s element, the class chosen by its tag, with `catalog` and `parent` as
// its links; setting the parent is heard nowhere. E_FAIL for a null node or a tag of no class
// (and then no object).
HRESULT createObjectOf(IXMLDOMNode* node, IQVRCatalogObject* catalog, IQVRCatalogObject* parent,
                       Ref<IQVRCatalogObject>* object);

// The creator of the class whose tag is `tag`, compared exactly; null for a tag of no class
// (also for a class not built yet). Defined with the tag table.
Creator creatorOfTag(std::string_view tag);

// A new data object that offers `object` in the transfer formats. Defined with the transfer.
HRESULT createDataObject(IQVRCatalogObject* object, Ref<IDataObject>* dataObject);

// A new list of the file pointers found from `object` down, `deep` (VARIANT_TRUE alone) going
// into the tables of parts. Defined with the transfer.
HRESULT collectReferencedFiles(IQVRCatalogObject* object, VARIANT_BOOL deep,
                               Ref<IQVRCatalogObjectList>* files);

} // namespace qvr
