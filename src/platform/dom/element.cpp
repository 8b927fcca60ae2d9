#include "platform/dom/element.h"

#include "platform/com/failure.h"
#include "platform/dom/attribute_access.h"

namespace qvr::dom {

HRESULT Element::get_tagName(String* name) {
    return get_nodeName(name);
}

HRESULT Element::getAttribute(const String& name, String* value) {
    if (!value) return E_POINTER;
    *value = String();
    if (name.isNull()) return E_INVALIDARG;
    return guarded([&] { return AttributeAccess::get(xml(), name, value); });
}

HRESULT Element::getAttribute(const String& name, Variant* value) {
    if (!value) return E_POINTER;
    *value = Variant::null();
    String text;
    const HRESULT status = getAttribute(name, &text);
    if (status == S_OK) *value = Variant(std::move(text));
    return status;
}

HRESULT Element::setAttribute(const String& name, const String& value) {
    if (name.isNull()) return E_INVALIDARG;
    return guarded([&] { return AttributeAccess::set(xml(), name, value); });
}

HRESULT Element::removeAttribute(const String& name) {
    if (name.isNull()) return E_INVALIDARG;
    return guarded([&] { return AttributeAccess::remove(xml(), name); });
}

} // namespace qvr::dom
