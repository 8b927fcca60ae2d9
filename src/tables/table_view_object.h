// The views (of drawings, and const views of recipes): the side a view shows and its name in
// place of a column's name, type and unit, and two singletons of their own, the view's images and
// the files its drawings refer to, which stand ahead of Extrinsics:
//
//   Images, XRefFiles, Extrinsics, then the view's drawings or recipes
//
// A new view is described in two steps, since a const view takes its first recipe between them.
#pragma once

#include <qvr/media.h>
#include <qvr/table_columns.h>

#include "core/singleton_tool.h"
#include "tables/table_child.h"

namespace qvr {

// The names of QVRViewKey in `viewKey`, by number.
inline constexpr const char* viewKeyNames[] = {"front", "back",   "left", "right",
                                               "top",   "bottom", "3d",   "undefined"};
// The singletons of a view, in the order in which they stand.
inline constexpr const char* viewSingletons[] = {"Images", "XRefFiles", "Extrinsics"};

template <class Interface, QVRObjectType Type>
class TableViewObject : public TableChildObject<Interface, Type> {
public:
    // --- IQVRTableViewObject -------------------------------------------------------------------
    HRESULT get_viewKey(QVRViewKey* viewKey) override {
        return accessors::getNumberedAttribute(*this, "viewKey", viewKeyNames, viewKey);
    }
    HRESULT put_viewKey(QVRViewKey viewKey) override {
        return accessors::putNumberedAttribute(*this, "viewKey", viewKeyNames, viewKey);
    }
    HRESULT get_viewName(String* viewName) override {
        return accessors::getAttribute(*this, "viewName", viewName);
    }
    HRESULT put_viewName(const String& viewName) override {
        return accessors::putAttribute(*this, "viewName", viewName);
    }
    HRESULT get_images(Ref<IQVRCatalogImages>* images) override {
        return accessors::getSingleton(*this, "Images", images);
    }
    HRESULT putref_images(IQVRCatalogObject* images) override {
        return accessors::putSingletonInOrder(*this, "Images", images, viewSingletons);
    }
    HRESULT get_xRefFiles(Ref<IQVRCatalogReferencedFiles>* files) override {
        return accessors::getSingleton(*this, "XRefFiles", files);
    }
    // Not the singleton pattern: files given to a view that has files already replace its
    // images, not its files, and a removal that finds nothing answers S_FALSE and tells nobody.
    // Kept as views have always behaved, so that the same calls write the same documents.
    HRESULT putref_xRefFiles(IQVRCatalogObject* files) override {
        return guarded([&] {
            if (!this->initialized()) return this->notInitialized();
            IXMLDOMElement* element = this->element();
            Ref<IXMLDOMNode> present;
            HRESULT hr = element->selectSingleNode("XRefFiles", &present);
            if (FAILED(hr)) return hr;
            SingletonTool tool(element);
            Ref<IQVRCatalogObject> other;
            const Ref<IQVRCatalogObject> table = this->catalogRef();
            if (present && files)
                hr = tool.replaceSingleton(table, this->self(), "Images", files, &other);
            else if (present)
                hr = tool.removeNode(present);
            else if (files)
                hr = tool.insertSingletonAfter(table, this->self(), "Images", files, &other);
            else
                hr = S_FALSE;
            if (hr == S_OK) this->fireChanged();
            return hr;
        });
    }

    // The first step of describing a new view: a new `id` and the side. Fires nothing.
    HRESULT identifyNew(QVRViewKey viewKey) {
        if (!accessors::namesNumber(viewKeyNames, viewKey)) return E_INVALIDARG;
        HRESULT hr = this->element()->setAttribute("id", newColumnId());
        return hr == S_OK ? this->element()->setAttribute("viewKey", viewKeyNames[viewKey]) : hr;
    }
    // The second: `viewName` and `desc` when not empty, `visible` "0" for a hidden view.
    HRESULT describeNew(const String& viewName, const String& desc, VARIANT_BOOL visible) {
        IXMLDOMElement* element = this->element();
        HRESULT hr = S_OK;
        if (!viewName.isEmpty()) hr = element->setAttribute("viewName", viewName);
        if (hr == S_OK && !desc.isEmpty()) hr = element->setAttribute("desc", desc);
        if (hr == S_OK && visible == VARIANT_FALSE) hr = element->setAttribute("visible", "0");
        return hr;
    }

protected:
    ChildNames extrinsicsPredecessors() const override {
        return namesBefore(viewSingletons, "Extrinsics");
    }
};

} // namespace qvr
