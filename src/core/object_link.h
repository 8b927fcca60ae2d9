// A link from one object of the model to another (its catalog, its parent) through a cookie of the
// process's cookie table. The linked object stays alive until the link is replaced or dropped, so
// a wrapper keeps its catalog and its parent alive while they hold nothing of it. Linking the
// object that is linked already changes nothing.
#pragma once

#include <cstdint>

#include <qvr/object.h>

namespace qvr {

class ObjectLink {
public:
    ObjectLink() = default;
    ~ObjectLink() { drop(); }
    ObjectLink(const ObjectLink&) = delete;
    ObjectLink& operator=(const ObjectLink&) = delete;

    std::uint32_t cookie() const { return cookie_; }
    explicit operator bool() const { return cookie_ != 0; }

    // Drops the old link and registers `object`; a null object leaves no link and answers S_OK.
    HRESULT set(IQVRCatalogObject* object);
    void drop();
    // The linked object; without a link, null and `withoutLink`.
    HRESULT get(Ref<IQVRCatalogObject>* object, HRESULT withoutLink) const;
    // The linked object, or null.
    Ref<IQVRCatalogObject> object() const;
    // An operation's hand-out of the link: E_POINTER for a null out pointer, then as get.
    HRESULT handOut(Ref<IQVRCatalogObject>* object, HRESULT withoutLink) const noexcept;

private:
    std::uint32_t cookie_ = 0;
    // The object the cookie holds alive, reached without a lookup in the table; null without a
    // link.
    IQVRCatalogObject* linked_ = nullptr;
};

} // namespace qvr
