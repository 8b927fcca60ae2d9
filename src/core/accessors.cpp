#include "core/accessors.h"

#include "core/child_tool.h"
#include "core/iso_codes.h"
#include "core/object_factory.h"
#include "core/singleton_tool.h"
#include "platform/com/failure.h"
#include "platform/url/url.h"

namespace qvr::accessors {
namespace {

// The frame of every pattern: the out pointer (when there is one), the element, and the body,
// with exceptions turned into statuses.
template <class Body>
HRESULT onElement(ObjectFrame& object, const void* out, Body&& body) noexcept {
    return guarded([&] {
        if (!out) return E_POINTER;
        if (!object.initialized()) return object.notInitialized();
        return body(object.element());
    });
}
template <class Body>
HRESULT onElement(ObjectFrame& object, Body&& body) noexcept {
    return onElement(object, &object, std::forward<Body>(body));
}

// Fires the change when the step before succeeded, and hands its status on.
HRESULT changed(ObjectFrame& object, HRESULT hr) {
    if (hr == S_OK) object.fireChanged();
    return hr;
}

// A new child `name` with `text`, placed ahead of the first of `followers` that exists, or last.
// With `code` (when given) in its `isoCountryCode`.
HRESULT insertTextChild(IXMLDOMElement* element, const char* name, const String& text,
                        ChildNames followers, const String* code = nullptr) {
    Ref<IXMLDOMDocument> document;
    HRESULT hr = element->get_ownerDocument(&document);
    if (FAILED(hr) || !document) return FAILED(hr) ? hr : E_FAIL;
    Ref<IXMLDOMElement> child;
    if ((hr = document->createElement(name, &child)) != S_OK) return hr;
    if (FAILED(hr = child->put_text(text))) return hr;
    if (code && (hr = child->setAttribute("isoCountryCode", *code)) != S_OK) return hr;
    Ref<IXMLDOMNode> reference;
    for (const char* follower : followers)
        if (element->selectSingleNode(follower, &reference) == S_OK) break;
    return CXMLDOMTool(element).insertNode(child, reference);
}

// The stored form of a file reference: a URL as it stands, a path converted.
HRESULT storedReference(const String& text, String* stored) {
    HRESULT hr = url::pathToUrl(text, stored);
    if (hr == S_FALSE) *stored = text; // a URL already
    return FAILED(hr) ? hr : S_OK;
}

// Sets the text of `node`, or makes the child when there is none.
HRESULT writeTextChild(IXMLDOMElement* element, IXMLDOMNode* node, const char* name,
                       const String& text, ChildNames followers) {
    return node ? node->put_text(text) : insertTextChild(element, name, text, followers);
}

} // namespace

HRESULT getAttribute(ObjectFrame& object, const char* name, String* value) noexcept {
    return onElement(object, value, [&](IXMLDOMElement* element) {
        String read;
        HRESULT hr = element->getAttribute(name, &read);
        if (hr == S_OK) *value = std::move(read);
        return hr;
    });
}

HRESULT putAttribute(ObjectFrame& object, const char* name, const String& value) noexcept {
    return onElement(object, [&](IXMLDOMElement* element) {
        return changed(object, element->setAttribute(name, value.isNull() ? String("") : value));
    });
}

HRESULT putClearableAttribute(ObjectFrame& object, const char* name, const String& value) noexcept {
    return onElement(object, [&](IXMLDOMElement* element) {
        if (!value.isEmpty()) return changed(object, element->setAttribute(name, value));
        HRESULT hr = element->removeAttribute(name);
        return hr == S_FALSE ? S_OK : changed(object, hr);
    });
}

HRESULT putKeyAttribute(ObjectFrame& object, const char* name, const String& value,
                        bool (*valid)(const String&), Msg invalidMessage) noexcept {
    if (value.isEmpty()) return putClearableAttribute(object, name, value);
    return putUniqueAttribute(object, name, value, valid, invalidMessage);
}

HRESULT putUniqueAttribute(ObjectFrame& object, const char* name, const String& value,
                           bool (*valid)(const String&), Msg invalidMessage) noexcept {
    return onElement(object, [&](IXMLDOMElement* element) {
        if (valid && !valid(value)) return object.report(invalidMessage);
        // Among the parent's children; without a parent the tool is empty and finds no sibling.
        Ref<IXMLDOMElement> siblings;
        if (const Ref<IQVRCatalogObject> parent = object.parentRef();
            parent && FAILED(parent->get_domNode(&siblings)))
            siblings = nullptr;
        if (ChildTool(siblings).checkUniqueAttribute(element, name, value) != S_OK)
            return object.report(msgDuplicateId);
        return changed(object, element->setAttribute(name, value));
    });
}

HRESULT getNumberedAttribute(ObjectFrame& object, const char* name, ChildNames texts,
                             std::int32_t unknown, std::int32_t* number) noexcept {
    return onElement(object, number, [&](IXMLDOMElement* element) {
        String text;
        HRESULT hr = element->getAttribute(name, &text);
        if (hr != S_OK) return hr;
        *number = unknown;
        for (std::size_t index = 0; index < texts.size(); ++index)
            if (text == texts[index]) {
                *number = static_cast<std::int32_t>(index);
                break;
            }
        return S_OK;
    });
}

HRESULT putNumberedAttribute(ObjectFrame& object, const char* name, ChildNames texts,
                             std::int32_t number) noexcept {
    return onElement(object, [&](IXMLDOMElement* element) {
        if (!namesNumber(texts, number)) return E_INVALIDARG;
        return changed(object, element->setAttribute(name, texts[number]));
    });
}

HRESULT putNumberedAttributeOrRemove(ObjectFrame& object, const char* name, ChildNames texts,
                                     std::int32_t number, std::int32_t absent) noexcept {
    if (number == absent) return putClearableAttribute(object, name, String());
    return putNumberedAttribute(object, name, texts, number);
}

HRESULT getFlag(ObjectFrame& object, const char* name, VARIANT_BOOL* value) noexcept {
    if (value) *value = VARIANT_TRUE;
    return onElement(object, value, [&](IXMLDOMElement* element) {
        String text;
        HRESULT hr = element->getAttribute(name, &text);
        if (hr != S_OK) return hr;
        Variant flag;
        if ((hr = changeType(&flag, Variant(text), LOCALE_USER_DEFAULT, 0, VT_BOOL)) != S_OK)
            return hr;
        *value = flag.boolVal();
        return S_OK;
    });
}

HRESULT putFlag(ObjectFrame& object, const char* name, VARIANT_BOOL value) noexcept {
    return onElement(object, [&](IXMLDOMElement* element) {
        return changed(object, element->setAttribute(name, value == VARIANT_TRUE ? "1" : "0"));
    });
}

HRESULT getOwnText(ObjectFrame& object, String* text) noexcept {
    return onElement(object, text,
                     [&](IXMLDOMElement* element) { return element->get_text(text); });
}

HRESULT putOwnText(ObjectFrame& object, const String& text) noexcept {
    return onElement(
        object, [&](IXMLDOMElement* element) { return changed(object, element->put_text(text)); });
}

HRESULT getReferenceText(ObjectFrame& object, String* text) noexcept {
    return onElement(object, text, [&](IXMLDOMElement* element) {
        String stored, converted;
        HRESULT hr = element->get_text(&stored);
        if (FAILED(hr)) return hr;
        if ((hr = storedReference(stored, &converted)) == S_OK) *text = std::move(converted);
        return hr;
    });
}

HRESULT putReferenceText(ObjectFrame& object, const String& text) noexcept {
    return onElement(object, [&](IXMLDOMElement* element) {
        String converted;
        HRESULT hr = storedReference(text, &converted);
        return hr == S_OK ? changed(object, element->put_text(converted)) : hr;
    });
}

HRESULT getReferenceAttribute(ObjectFrame& object, const char* name, String* text) noexcept {
    return onElement(object, text, [&](IXMLDOMElement* element) {
        String stored, converted;
        HRESULT hr = element->getAttribute(name, &stored);
        if (hr != S_OK) return hr;
        if ((hr = storedReference(stored, &converted)) == S_OK) *text = std::move(converted);
        return hr;
    });
}

HRESULT putReferenceAttribute(ObjectFrame& object, const char* name, const String& text) noexcept {
    return onElement(object, [&](IXMLDOMElement* element) {
        if (text.isNull()) return E_INVALIDARG;
        String converted;
        HRESULT hr = storedReference(text, &converted);
        return hr == S_OK ? changed(object, element->setAttribute(name, converted)) : hr;
    });
}

HRESULT getChildText(ObjectFrame& object, const char* child, String* text) noexcept {
    return onElement(object, text, [&](IXMLDOMElement* element) {
        Ref<IXMLDOMNode> node;
        HRESULT hr = element->selectSingleNode(child, &node);
        if (hr != S_OK) return hr;
        String read;
        if ((hr = node->get_text(&read)) == S_OK) *text = std::move(read);
        return hr;
    });
}

HRESULT putExistingChildText(ObjectFrame& object, const char* child, const String& text) noexcept {
    return onElement(object, [&](IXMLDOMElement* element) {
        Ref<IXMLDOMNode> node;
        HRESULT hr = element->selectSingleNode(child, &node);
        if (hr != S_OK) return hr; // never created here
        return changed(object, node->put_text(text));
    });
}

HRESULT putOrderedChildText(ObjectFrame& object, const char* child, const String& text,
                            ChildNames followers) noexcept {
    return onElement(object, [&](IXMLDOMElement* element) {
        Ref<IXMLDOMNode> node;
        HRESULT hr = element->selectSingleNode(child, &node);
        if (FAILED(hr)) return hr;
        hr = writeTextChild(element, node, child, text, followers);
        return changed(object, FAILED(hr) ? hr : S_OK);
    });
}

HRESULT putRemovableChildText(ObjectFrame& object, const char* child, const String& text,
                              ChildNames followers) noexcept {
    return onElement(object, [&](IXMLDOMElement* element) {
        Ref<IXMLDOMNode> node;
        HRESULT hr = element->selectSingleNode(child, &node);
        if (FAILED(hr)) return hr;
        if (!text.isEmpty())
            hr = writeTextChild(element, node, child, text, followers);
        else if (node)
            hr = CXMLDOMTool(element).removeNode(node);
        return changed(object, FAILED(hr) ? hr : S_OK);
    });
}

HRESULT getDateChild(ObjectFrame& object, const char* child, Variant* date) noexcept {
    return onElement(object, date, [&](IXMLDOMElement* element) {
        Ref<IXMLDOMNode> node;
        HRESULT hr = element->selectSingleNode(child, &node);
        if (hr != S_OK) return hr;
        String text;
        if ((hr = node->get_text(&text)) != S_OK) return hr;
        Variant read;
        if ((hr = changeType(&read, Variant(std::move(text)), LOCALE_USER_DEFAULT, 0, VT_DATE)) ==
            S_OK)
            *date = std::move(read);
        return hr;
    });
}

HRESULT putDateChild(ObjectFrame& object, const char* child, const Variant& date,
                     ChildNames followers) noexcept {
    return onElement(object, [&](IXMLDOMElement* element) {
        Ref<IXMLDOMNode> node;
        HRESULT hr = element->selectSingleNode(child, &node);
        if (FAILED(hr)) return hr;
        // What a caller's left-out argument gives counts as no date.
        if (date.vt() == VT_EMPTY || date.vt() == VT_ERROR)
            return node ? changed(object, CXMLDOMTool(element).removeNode(node)) : S_OK;
        Variant text;
        if ((hr = changeType(&text, date, LOCALE_USER_DEFAULT, 0, VT_BSTR)) != S_OK) return hr;
        hr = writeTextChild(element, node, child, text.str(), followers);
        return changed(object, FAILED(hr) ? hr : S_OK);
    });
}

HRESULT getCodedChildText(ObjectFrame& object, const char* child, String* code,
                          String* text) noexcept {
    return onElement(object, text, [&](IXMLDOMElement* element) {
        Ref<IXMLDOMNode> node;
        HRESULT hr = element->selectSingleNode(child, &node);
        if (hr != S_OK) return hr;
        String read;
        if ((hr = node->get_text(&read)) != S_OK) return hr;
        *text = std::move(read);
        Ref<IXMLDOMElement> coded = query<IXMLDOMElement>(node);
        if (!coded || (hr = coded->getAttribute("isoCountryCode", &read)) != S_OK)
            return coded ? hr : E_FAIL;
        if (code) *code = std::move(read);
        return S_OK;
    });
}

HRESULT putCodedChildText(ObjectFrame& object, const char* child, const String& code,
                          const String& text, ChildNames followers) noexcept {
    return guarded([&] {
        // The code is looked at before anything else: a bad one leaves everything as it was.
        if (!isCountryCode(code)) return object.report(msgBadCountryCode);
        return onElement(object, [&](IXMLDOMElement* element) {
            Ref<IXMLDOMNode> node;
            HRESULT hr = element->selectSingleNode(child, &node);
            if (FAILED(hr)) return hr;
            if (!node)
                return changed(object, insertTextChild(element, child, text, followers, &code));
            Ref<IXMLDOMElement> coded = query<IXMLDOMElement>(node);
            if (!coded) return E_FAIL;
            if (FAILED(hr = coded->put_text(text))) return hr;
            return changed(object, coded->setAttribute("isoCountryCode", code));
        });
    });
}

HRESULT wrapSelected(IXMLDOMElement* element, const char* xpath, IQVRCatalogObject* catalog,
                     IQVRCatalogObject* parent, Ref<IQVRCatalogObject>* object) {
    *object = nullptr;
    Ref<IXMLDOMNode> node;
    HRESULT hr = element->selectSingleNode(xpath, &node);
    if (hr != S_OK) return hr;
    return createObjectOf(node, catalog, parent, object);
}

HRESULT getSingleton(ObjectFrame& object, const char* child,
                     Ref<IQVRCatalogObject>* value) noexcept {
    if (value) *value = nullptr;
    return onElement(object, value, [&](IXMLDOMElement* element) {
        Ref<IXMLDOMNode> node;
        if (element->selectSingleNode(child, &node) != S_OK) return S_FALSE;
        return createObjectOf(node, object.catalogRef(), object.self(), value);
    });
}

HRESULT putSingleton(ObjectFrame& object, const char* child, IQVRCatalogObject* value,
                     ChildNames predecessors) noexcept {
    return onElement(object, [&](IXMLDOMElement* element) {
        Ref<IXMLDOMNode> present;
        HRESULT hr = element->selectSingleNode(child, &present);
        if (FAILED(hr)) return hr;
        SingletonTool tool(element);
        const Ref<IQVRCatalogObject> catalog = object.catalogRef();
        Ref<IQVRCatalogObject> placed;
        if (present && value) {
            hr = tool.replaceSingleton(catalog, object.self(), child, value, &placed);
        } else if (present) {
            hr = tool.removeNode(present);
        } else if (value) {
            // Right behind the last predecessor that stands here; with none, the first name
            // selects nothing and the child goes first.
            const char* after = lastPresentChild(
                element, predecessors, predecessors.empty() ? child : predecessors.front());
            hr = tool.insertSingletonAfter(catalog, object.self(), after, value, &placed);
        }
        return changed(object, FAILED(hr) ? hr : S_OK);
    });
}

HRESULT putRequiredSingleton(ObjectFrame& object, const char* child, IQVRCatalogObject* value,
                             ChildNames predecessors) noexcept {
    if (!value) return E_POINTER;
    return putSingleton(object, child, value, predecessors);
}

const char* lastPresentChild(IXMLDOMElement* element, ChildNames names, const char* fallback) {
    const char* last = fallback;
    for (const char* name : names) {
        Ref<IXMLDOMNode> found;
        if (element->selectSingleNode(name, &found) == S_OK) last = name;
    }
    return last;
}

} // namespace qvr::accessors
