// A chapter: holds chapters and parts in any mix, behind its groups (see descriptive_element.h).
// Its key is its `id`.
#pragma once

#include <qvr/content.h>

#include "content/descriptive_element.h"
#include "core/catalog_object.h"

namespace qvr {

class CQVRCatalogChapter final
    : public DescriptiveElement<CatalogObject<IQVRCatalogChapter, qvrChapter>> {
public:
    // A new chapter: an empty Desc, a new `id`, the name, visible. Fires nothing.
    HRESULT fillNew(const String& name);

    // The copy gets a new `id`; a deep copy (deep exactly VARIANT_TRUE) gets new ids for every
    // chapter and part in it too.
    HRESULT cloneNode(VARIANT_BOOL deep, Ref<IQVRCatalogObject>* clone) override;
};

} // namespace qvr
