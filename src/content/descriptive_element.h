// What chapters and parts share: a `name`, a `visible` flag, the text of their Desc child and the
// optional groups that stand below them in a fixed order. The two interfaces list these
// operations in different orders, so the implementations stand here once, over either.
#pragma once

#include <qvr/content.h>

#include "core/accessors.h"

namespace qvr {

// The order of the children of a chapter or a part ahead of their subchapters, parts and table
// reference. ActiveXs is never written by the model; it only holds its place when present.
inline constexpr const char* groupOrder[] = {"Desc",      "Images",         "Link",
                                             "Documents", "ActiveXs",       "Extrinsics",
                                             "OrderInfo", "Classifications"};

template <class Base>
class DescriptiveElement : public Base {
public:
    HRESULT get_name(String* name) override { return accessors::getAttribute(*this, "name", name); }
    HRESULT put_name(const String& name) override {
        return accessors::putAttribute(*this, "name", name);
    }
    HRESULT get_visible(VARIANT_BOOL* visible) override {
        return accessors::getFlag(*this, "visible", visible);
    }
    HRESULT put_visible(VARIANT_BOOL visible) override {
        return accessors::putFlag(*this, "visible", visible);
    }
    HRESULT get_desc(String* desc) override { return accessors::getChildText(*this, "Desc", desc); }
    // Never creates the Desc: a chapter or part without one answers S_FALSE.
    HRESULT put_desc(const String& desc) override {
        return accessors::putExistingChildText(*this, "Desc", desc);
    }
    HRESULT get_images(Ref<IQVRCatalogImages>* images) override {
        return accessors::getSingleton(*this, "Images", images);
    }
    HRESULT putref_images(IQVRCatalogObject* images) override { return putGroup("Images", images); }
    HRESULT get_link(Ref<IQVRCatalogLink>* link) override {
        return accessors::getSingleton(*this, "Link", link);
    }
    HRESULT putref_link(IQVRCatalogObject* link) override { return putGroup("Link", link); }
    HRESULT get_documents(Ref<IQVRCatalogDocuments>* documents) override {
        return accessors::getSingleton(*this, "Documents", documents);
    }
    HRESULT putref_documents(IQVRCatalogObject* documents) override {
        return putGroup("Documents", documents);
    }
    HRESULT get_extrinsics(Ref<IQVRCatalogExtrinsics>* extrinsics) override {
        return accessors::getSingleton(*this, "Extrinsics", extrinsics);
    }
    HRESULT putref_extrinsics(IQVRCatalogObject* extrinsics) override {
        return putGroup("Extrinsics", extrinsics);
    }

protected:
    // Sets, replaces or removes the group `name` at its place in the group order.
    HRESULT putGroup(const char* name, IQVRCatalogObject* group) {
        return accessors::putSingletonInOrder(*this, name, group, groupOrder);
    }
};

} // namespace qvr
