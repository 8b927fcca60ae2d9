// The DOM tool for the children an object keeps by key: insertion at a position with the check
// that no sibling has the key, removal, the live list of the children, and the questions those
// answer first (where a position points, whether a key is free, whether an id stands below).
#pragma once

#include <cstdint>

#include <qvr/object_list.h>

#include "core/xml_dom_tool.h"

namespace qvr {

class ChildTool : public CXMLDOMTool {
public:
    using CXMLDOMTool::CXMLDOMTool;

    // Inserts `newChild` into the tool's node at `position` after checking that no sibling has
    // its key. `inserted` receives `newChild` itself. E_INVALIDARG without catalog, parent or
    // child; S_FALSE (nothing inserted) when a position text names no child; QVR_E_DUPLICATE
    // when the key is taken.
    HRESULT insertChildObject(IQVRCatalogObject* catalog, IQVRCatalogObject* parent,
                              IQVRCatalogObject* newChild, const Variant& position,
                              Ref<IQVRCatalogObject>* inserted, const String& keyAttribute,
                              const String& childSelection);
    // Takes `child`'s element out of the tool's node; `removed` (may be null) receives a new
    // wrapper of it that keeps the old parent link.
    HRESULT removeChildObject(IQVRCatalogObject* catalog, IQVRCatalogObject* child,
                              Ref<IQVRCatalogObject>* removed);
    // A new live list of wrappers of the nodes that `xpath` selects, owned by `owner`.
    HRESULT selectObjectList(IQVRCatalogObject* catalog, IQVRCatalogObject* owner,
                             const String& xpath, Ref<IQVRCatalogObjectList>* list);
    // The node before which an insertion at `position` goes; none (null, S_OK) appends.
    HRESULT resolveInsertPosition(const Variant& position, const String& keyAttribute,
                                  const String& childSelection, Ref<IXMLDOMNode>* reference);
    // QVR_E_DUPLICATE when a child of the tool's node other than `element` would share the value
    // of `attribute`: `wanted` if given, else the element's own value.
    HRESULT checkUniqueAttribute(IXMLDOMElement* element, const String& attribute,
                                 const String& wanted);
    // Whether an element below the tool's node has the key of `object` as its `id`.
    HRESULT containsId(IQVRCatalogObject* object, VARIANT_BOOL* contained);
};

} // namespace qvr
