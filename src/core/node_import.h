// Objects handed over from another process arrive over a private copy of their text, marked as
// come from elsewhere. Such a node cannot simply move into a document of this model: a copy of
// it is made through its text, and the tables that came along are attached to the copied parts.
#pragma once

#include <qvr/dom.h>
#include <qvr/object.h>

#include "core/xml_dom_tool.h"

namespace qvr {

// The attribute of the private document's root that marks a copy from another process.
inline constexpr const char* transferMark = "transferredFrom";

class NodeImport : public CXMLDOMTool {
public:
    using CXMLDOMTool::CXMLDOMTool;

    // Whether `node` lives in the private copy of an object from another process.
    static bool isForeignNode(IXMLDOMNode* node);
    // A copy of the tool's node, made from its text in a document of its own. The copy's root
    // declares the XLink prefix, so that texts using xlink: attributes parse.
    HRESULT importNode(Ref<IXMLDOMElement>* copy);
    // The tables of the parts of `foreignChapter`, at any depth, attached to their copies below
    // `chapter`. The first failure ends it.
    static HRESULT attachChapterTables(IQVRCatalogObject* catalog,
                                       IQVRCatalogObject* foreignChapter,
                                       IQVRCatalogObject* chapter);
    // The table of `foreignPart` loaded anew in `catalog` and attached to `part`, its copy there;
    // S_OK when the part has no table.
    static HRESULT attachPartTables(IQVRCatalogObject* catalog, IQVRCatalogObject* foreignPart,
                                    IQVRCatalogObject* part);
    // Whether the catalog of `part` has the table of `key` open.
    static bool catalogHasTable(const String& key, IQVRCatalogObject* part);
};

// What every road that takes a new child does before and after placing its element.
class NewChild {
public:
    // The element to place: the child's own, or for a foreign child a copy of it.
    HRESULT prepare(IQVRCatalogObject* child);
    IXMLDOMElement* element() const { return element_.get(); }
    bool foreign() const { return foreign_; }
    // After a child kept by key is placed below `into`: links it to `catalog` and `parent`. A
    // foreign child stays as it was; `inserted` receives a new wrapper of the copy with its
    // tables attached.
    HRESULT link(IXMLDOMNode* into, IQVRCatalogObject* catalog, IQVRCatalogObject* parent,
                 Ref<IQVRCatalogObject>* inserted);
    // After a single child is placed below `into`: the object given is linked to `catalog` and
    // `parent`, a foreign one too, though it goes on wrapping its own element.
    // Either way a child that can't be linked or wrapped (out of memory) is taken out again, so
    // that an insertion happens whole or not at all; other statuses of the links don't concern it.
    HRESULT linkGiven(IXMLDOMNode* into, IQVRCatalogObject* catalog, IQVRCatalogObject* parent,
                      Ref<IQVRCatalogObject>* inserted);

private:
    Ref<IQVRCatalogObject> child_;
    Ref<IXMLDOMElement> element_;
    bool foreign_ = false;
};

} // namespace qvr
