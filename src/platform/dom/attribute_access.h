// Attributes by qualified name ("id", "xlink:href", "xml:lang", "xmlns:xlink"), whether they came
// from a parsed file or were set in memory. A prefix is resolved through the declarations in
// scope; a known prefix that is not declared yet (xlink) is declared on the element, so that the
// attribute is a namespaced attribute that XPath sees and that is written with its declaration.
// "xmlns" and "xmlns:*" address the element's namespace declarations.
#pragma once

#include <string_view>

#include <libxml/tree.h>

#include <qvr/com.h>
#include <qvr/string.h>

namespace qvr::dom {

struct KnownNamespace {
    const char* prefix;
    const char* uri;
};

class AttributeAccess {
public:
    // S_FALSE and a null value when the attribute is absent.
    static HRESULT get(xmlNodePtr element, const String& name, String* value);
    // E_FAIL for a name that is not a qualified name or a declaration that cannot be made.
    static HRESULT set(xmlNodePtr element, const String& name, const String& value);
    // S_FALSE when absent; E_FAIL for a namespace declaration that is still in use.
    static HRESULT remove(xmlNodePtr element, const String& name);
    // The value of an attribute node, which may have left its element.
    static HRESULT setValue(xmlAttrPtr attribute, const String& value);
    // A copy of an attribute standing alone, keeping its qualified name.
    static xmlAttrPtr copyAlone(xmlAttrPtr attribute);

    // The attribute `name` (qualified as get takes it) of `element`, or null.
    static xmlAttrPtr find(xmlNodePtr element, std::string_view name);

    // The prefixes the layer knows without a declaration; XPath knows them too.
    static const KnownNamespace* knownNamespaces(std::size_t* count);

private:
    // S_OK for a value a document can carry, else the report that names the attribute.
    static HRESULT checkValue(std::string_view name, const String& value);
    static HRESULT setDeclaration(xmlNodePtr element, const String& name, const String& value);
    static HRESULT removeDeclaration(xmlNodePtr element, const String& name);
    static void makeAlone(xmlAttrPtr attribute);
    static bool isTracked(xmlAttrPtr attribute);
};

} // namespace qvr::dom
