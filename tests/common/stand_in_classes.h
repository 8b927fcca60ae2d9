// Classes whose own operations arrive later, declared the way every class of the model is: an
// interface and an object type, nothing more. They let the tests place groups below parts.
#pragma once

#include <gtest/gtest.h>

#include <qvr/catalog.h>

#include "core/catalog_object.h"
#include "core/object_factory.h"

namespace qvr::testing {

class StandInOrderInfo final : public CatalogObject<IQVRCatalogOrderInfo, qvrOrderInfo> {};

// A new object of class T in `catalog`'s document, standing in no tree.
template <class T>
Ref<T> makeStandIn(IQVRCatalog* catalog) {
    Ref<IXMLDOMElement> root;
    Ref<IXMLDOMDocument> document;
    Ref<T> object;
    EXPECT_EQ(catalog->get_domNode(&root), S_OK);
    EXPECT_EQ(root->get_ownerDocument(&document), S_OK);
    EXPECT_EQ(createNewWrapper<T>(document, catalog, &object), S_OK);
    return object;
}

} // namespace qvr::testing
