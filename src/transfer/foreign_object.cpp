// The object of a packet from another process: its text in a private catalog, whose root is
// marked so that the node import knows its nodes for copies from elsewhere.
#include <unistd.h>

#include <string>

#include <qvr/catalog.h>
#include <qvr/table.h>

#include "core/node_import.h"
#include "core/object_factory.h"
#include "core/object_types.h"
#include "platform/com/error_report.h"
#include "transfer/marshal.h"

namespace qvr {
namespace {

const ErrorSource foreignSource{"QVRCatalog.Transfer", IUnknown::iid};

HRESULT unreadable(HRESULT hr) {
    return reportError(foreignSource,
                       String("The transferred object cannot be read: its text is no object"),
                       FAILED(hr) ? hr : RPC_E_INVALID_DATA);
}

HRESULT foreignRoot(const Packet& packet, Ref<IUnknown>* object) {
    VARIANT_BOOL loaded = VARIANT_FALSE;
    HRESULT hr;
    if (packet.type == qvrCatalog) {
        Ref<IQVRCatalog> catalog;
        if ((hr = CreateCatalog(&catalog)) != S_OK) return hr;
        if ((hr = catalog->loadXML(packet.xml, &loaded)) != S_OK) return unreadable(hr);
        *object = std::move(catalog);
        return S_OK;
    }
    Ref<IQVRCatalogTable> table;
    if ((hr = CreateCatalogTable(&table)) != S_OK) return hr;
    if ((hr = table->loadXML(packet.xml, String(""), 0, &loaded)) != S_OK) return unreadable(hr);
    *object = std::move(table);
    return S_OK;
}

} // namespace

HRESULT makeForeignObject(const Packet& packet, Ref<IUnknown>* object) {
    if (packet.type == qvrCatalog || packet.type == qvrTable) return foreignRoot(packet, object);
    Ref<IQVRCatalog> catalog;
    HRESULT hr = CreateCatalog(&catalog);
    if (hr != S_OK) return hr;
    const String document =
        String("<?xml version='1.0'?><vCAT xmlns:xlink='http://www.w3.org/1999/xlink' ") +
        transferMark + "='" + std::to_string(packet.process) + "'>" + packet.xml.view() + "</vCAT>";
    VARIANT_BOOL loaded = VARIANT_FALSE;
    if ((hr = catalog->loadXML(document, &loaded)) != S_OK) return unreadable(hr);
    // The tables that came along, open in the private catalog under their keys.
    Ref<IQVRCatalogObjectList> tables;
    if ((hr = catalog->get_tables(&tables)) != S_OK) return unreadable(hr);
    for (const PacketTable& entry : packet.tables) {
        Ref<IQVRCatalogTable> table;
        if ((hr = CreateCatalogTable(&table)) != S_OK) return unreadable(hr);
        if ((hr = table->loadXML(entry.xml, entry.key, 0, &loaded)) != S_OK) return unreadable(hr);
        if (!entry.url.isEmpty()) table->put_url(Variant(entry.url));
        VARIANT_BOOL added = VARIANT_FALSE;
        if (FAILED(hr = tables->appendChild(table, &added))) return unreadable(hr);
    }
    Ref<IXMLDOMElement> root;
    Ref<IXMLDOMNode> node;
    if ((hr = catalog->get_domNode(&root)) != S_OK || (hr = root->get_firstChild(&node)) != S_OK)
        return unreadable(hr);
    // Its tag must be that of the type the packet names.
    String tag;
    Ref<IXMLDOMElement> element = query<IXMLDOMElement>(node);
    const char* expected = objectTypeRow(packet.type).tag;
    if (!element || element->get_tagName(&tag) != S_OK || !expected || tag != expected)
        return reportError(foreignSource,
                           String("The transferred object cannot be read: it names an unknown "
                                  "kind of object"),
                           RPC_E_INVALID_DATA);
    Ref<IQVRCatalogObject> created;
    if ((hr = createObjectOf(node, catalog, catalog, &created)) != S_OK) return unreadable(hr);
    *object = std::move(created);
    return S_OK;
}

} // namespace qvr
