// The one place where the model changes the shape of a document. A tool is made on the stack for
// one operation around one node (usually the element of the object at work) and carries out
// child insertion and removal, the placing of single children, lookups by id, and the making of
// wrappers: createObject turns an element into the object of its class, chosen by its tag.
//
// The tool reports nothing itself: it answers statuses and its callers decide what to say.
// XPath texts are built by plain concatenation of fixed pieces and values; a value holding an
// apostrophe breaks the expression and the selection's failure comes back as it is.
#pragma once

#include <cstdint>

#include <qvr/dom.h>
#include <qvr/object.h>
#include <qvr/object_list.h>

namespace qvr {

class CXMLDOMTool {
public:
    // An empty tool: operations that need a node answer E_FAIL.
    CXMLDOMTool() = default;
    // Around `node`; its document is asked of the node.
    explicit CXMLDOMTool(IXMLDOMNode* node);
    // Around the element of the object registered under `cookie` (0: empty). A failure on the
    // way leaves the tool with what it has.
    static CXMLDOMTool fromCookie(std::uint32_t cookie);

    IXMLDOMNode* node() const { return node_.get(); }
    IXMLDOMDocument* ownerDocument() const { return ownerDocument_.get(); }

    // --- Insertion and removal -------------------------------------------------------------
    // Inserts `newChild` into the tool's node at `position` after checking that no sibling has
    // its key. `inserted` receives `newChild` itself. S_FALSE (nothing inserted) when a position
    // text names no child; QVR_E_DUPLICATE when the key is taken. The catalog comes from
    // `catalogCookie`.
    HRESULT insertChildObject(std::uint32_t catalogCookie, IQVRCatalogObject* parent,
                              IQVRCatalogObject* newChild, const Variant& position,
                              Ref<IQVRCatalogObject>* inserted, const String& keyAttribute,
                              const String& childSelection);
    HRESULT insertChildObjectDirect(IQVRCatalogObject* catalog, IQVRCatalogObject* parent,
                                    IQVRCatalogObject* newChild, const Variant& position,
                                    Ref<IQVRCatalogObject>* inserted, const String& keyAttribute,
                                    const String& childSelection);
    // Takes `child`'s element out of the tool's node; `removed` (may be null) receives a new
    // wrapper of it that keeps the old parent link.
    HRESULT removeChildObject(IQVRCatalogObject* catalog, IQVRCatalogObject* child,
                              Ref<IQVRCatalogObject>* removed);
    HRESULT removeChildFromCookie(std::uint32_t catalogCookie, IQVRCatalogObject* child,
                                  Ref<IQVRCatalogObject>* removed);
    // Replaces the child that `xpath` selects by `newChild`; `oldChild` receives a wrapper of the
    // old one, which leaves without parent. S_FALSE when nothing is selected.
    HRESULT replaceSingleton(std::uint32_t catalogCookie, IQVRCatalogObject* parent,
                             const String& xpath, IQVRCatalogObject* newChild,
                             Ref<IQVRCatalogObject>* oldChild);
    HRESULT replaceSingletonDirect(IQVRCatalogObject* catalog, IQVRCatalogObject* parent,
                                   const String& xpath, IQVRCatalogObject* newChild,
                                   Ref<IQVRCatalogObject>* oldChild);
    // Inserts `newChild` right behind the child that `xpath` selects, or first if none is.
    HRESULT insertSingletonAfter(std::uint32_t catalogCookie, IQVRCatalogObject* parent,
                                 const String& xpath, IQVRCatalogObject* newChild,
                                 Ref<IQVRCatalogObject>* inserted);
    HRESULT insertSingletonAfterDirect(IQVRCatalogObject* catalog, IQVRCatalogObject* parent,
                                       const String& xpath, IQVRCatalogObject* newChild,
                                       Ref<IQVRCatalogObject>* inserted);
    HRESULT insertSingletonFirst(std::uint32_t catalogCookie, IQVRCatalogObject* parent,
                                 IQVRCatalogObject* newChild, Ref<IQVRCatalogObject>* inserted);
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

    // --- Plain elements (Desc, TableRef and other data without a class) ---------------------
    // Appends a new element `tag` to the tool's node.
    HRESULT appendNewElement(const String& tag, Ref<IXMLDOMElement>* element);
    // Inserts `node` before `reference` (null appends) in the tool's node.
    HRESULT insertNode(IXMLDOMNode* node, IXMLDOMNode* reference);
    HRESULT removeNode(IXMLDOMNode* child);

    // --- The factory ------------------------------------------------------------------------
    // The object of the tool's element, chosen by its tag, with `catalog` and `parent` as links.
    // An unknown tag gives E_FAIL and no object.
    HRESULT createObject(IQVRCatalogObject* catalog, IQVRCatalogObject* parent,
                         Ref<IQVRCatalogObject>* object);
    HRESULT createObjectFromCookie(std::uint32_t catalogCookie, IQVRCatalogObject* parent,
                                   Ref<IQVRCatalogObject>* object);

    // --- Rows of a table (xml_dom_tool_rows.cpp) ---------------------------------------------
    // The tool stands on an element of a table; the selections go to its document, in shapes
    // the DOM layer answers from its indexes. S_OK and the row, or S_FALSE and null.
    // A row by its key text.
    HRESULT findRowByValue(const String& key, Ref<IXMLDOMElement>* row);
    // A row by its `id`.
    HRESULT findRowById(const String& id, Ref<IXMLDOMElement>* row);
    // A row by its place: `index` counts from 0; the selection written counts from 1.
    HRESULT findRowByIndex(std::int32_t index, Ref<IXMLDOMElement>* row);
    // The cells in all columns whose `idref` is the `id` of the tool's node (a row).
    HRESULT selectIdRefs(std::int32_t* count, Ref<IXMLDOMNodeList>* cells);
    // The tool stands on the column that has just received `cell`: the cell gets the id of the
    // row of its key, which is made (behind the row of the cell's next sibling) when there is
    // none. QVR_E_DUPLICATE when the column already has a cell for that row.
    HRESULT addRowForCell(IQVRCatalogObject* table, IQVRCatalogObject* cell);
    // Before `cell` leaves its column: its row goes with it when it is the row's last cell.
    // S_FALSE when the cell's row is not found.
    HRESULT removeRowForCell(IQVRCatalogObject* cell);
    // Tells `table`'s root that the tool's row came (before the row `position`) or went: the
    // unique column is the source, a wrapper of the row the subject.
    HRESULT fireRowEvent(IQVRCatalogObject* table, const Variant& position, std::int32_t event);

    // --- Nodes of another process ----------------------------------------------------------
    // Whether `node` belongs to an object of another process, which cannot be inserted here and
    // is copied in instead. No such objects exist yet: every node is local.
    static bool isForeignNode(IXMLDOMNode* node);
    // The copy of the tool's foreign node that can be inserted here.
    HRESULT importNode(Ref<IXMLDOMElement>* copy);
    HRESULT insertProxyChild(IQVRCatalogObject* catalog, IQVRCatalogObject* parent,
                             IQVRCatalogObject* newChild, const Variant& position,
                             Ref<IQVRCatalogObject>* inserted, const String& keyAttribute,
                             const String& childSelection);

    // --- Texts ------------------------------------------------------------------------------
    // Why the tool's document refused to load, in the form of msgXmlParseError; empty without one.
    String parseErrorText() const;

private:
    // The road of both single-child insertions: behind `predecessor`'s selection, or first.
    HRESULT placeSingleton(IQVRCatalogObject* catalog, IQVRCatalogObject* parent,
                           const String* predecessor, IQVRCatalogObject* newChild,
                           Ref<IQVRCatalogObject>* inserted);
    // The node to insert for `child`: its own, or the copy of a foreign one.
    HRESULT insertableNode(IQVRCatalogObject* child, Ref<IXMLDOMNode>* node);

    Ref<IXMLDOMDocument> ownerDocument_;
    Ref<IXMLDOMNode> node_;
};

} // namespace qvr
