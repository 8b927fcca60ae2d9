// What a catalog's table cache keeps of an open table, and what a table takes over from it: the
// document (which is what the cache is for), its root element as the table wraps it, the address,
// the base and the key. An entry holds no table object.
#pragma once

#include <qvr/dom.h>
#include <qvr/variant.h>

namespace qvr {

struct STableCache {
    Ref<IXMLDOMDocument> ownerDocument;
    Ref<IXMLDOMElement> element;
    Variant url;
    String baseUrl;
    String cachedKey;
};

} // namespace qvr
