// The table operations under an allocator that fails once, at the Nth allocation, for every N up
// to the number of allocations the operations make: each run ends in success or in
// E_OUTOFMEMORY, the document stays well formed, and every object is released. This program
// replaces the global allocation functions, so nothing else runs in it.
//
// The XML library's own allocations are left alone: libxml2 2.9 does not survive a failure of
// its allocator (it hands out nodes without names and crashes evaluating XPath compiled short
// of memory), so failing them would try libxml2 rather than this library.
#include <cstdlib>
#include <new>

#include "formulas/formula_fixture.h"

namespace {

// Counts allocations while armed and fails the one numbered `failAt`.
struct AllocationFault {
    bool armed = false;
    long count = 0;
    long failAt = 0;
    bool failed = false;
};
AllocationFault fault;

bool countedFailure() noexcept {
    if (fault.armed && ++fault.count == fault.failAt) {
        fault.failed = true;
        return true;
    }
    return false;
}

void* allocate(std::size_t size) noexcept {
    return countedFailure() ? nullptr : std::malloc(size ? size : 1);
}

} // namespace

void* operator new(std::size_t size) {
    if (void* p = allocate(size)) return p;
    throw std::bad_alloc();
}
void* operator new[](std::size_t size) {
    return operator new(size);
}
void* operator new(std::size_t size, const std::nothrow_t&) noexcept {
    return allocate(size);
}
void* operator new[](std::size_t size, const std::nothrow_t&) noexcept {
    return allocate(size);
}
void operator delete(void* p) noexcept {
    std::free(p);
}
void operator delete[](void* p) noexcept {
    std::free(p);
}
void operator delete(void* p, std::size_t) noexcept {
    std::free(p);
}
void operator delete[](void* p, std::size_t) noexcept {
    std::free(p);
}

namespace qvr::testing {
namespace {

// Arms the allocator for one run; disarmed again on leaving, whatever happens.
class FailingAt {
public:
    explicit FailingAt(long n) { fault = {true, 0, n, false}; }
    ~FailingAt() { fault.armed = false; }
    FailingAt(const FailingAt&) = delete;
    FailingAt& operator=(const FailingAt&) = delete;
};

// A status that a run may end in: success, or the failure of an allocation.
::testing::AssertionResult successOrOutOfMemory(HRESULT hr) {
    if (hr == S_OK || (hr == E_OUTOFMEMORY && fault.failed)) return ::testing::AssertionSuccess();
    return ::testing::AssertionFailure()
           << "status 0x" << std::hex << hr << (fault.failed ? " after" : " without")
           << " a failed allocation";
}

// The operations under test: a cell for a new row and one for a known row, appended and
// inserted; a move of rows and one of columns; the removal of a row's last cell and of a row;
// the freezing of a calculated column. The first failure ends the run, as it would end a
// client's.
HRESULT tableOperations(IQVRCatalogTable* table, IQVRTableColumn* length, IQVRTableColumn* thread) {
    Ref<IQVRTableCell> cell;
    HRESULT hr = table->createCell("C-40", Variant(60.0), &cell);
    if (hr == S_OK) hr = length->appendChild(cell, nullptr);
    Ref<IQVRTableCell> known;
    if (hr == S_OK) hr = table->createCell("B-30", Variant("M12"), &known);
    if (hr == S_OK) hr = thread->insertBefore(known, Variant(std::int32_t{1}), nullptr);
    Ref<IQVRTableUniqueColumn> unique;
    if (hr == S_OK) hr = table->get_uniqueColumn(&unique);
    if (hr == S_OK) hr = unique->moveRows(Variant(std::int32_t{1}), Variant(std::int32_t{3}));
    if (hr == S_OK) hr = table->moveColumns(Variant(std::int32_t{3}), Variant(std::int32_t{1}));
    // The last cell of a row takes the row along; a row takes its cells along.
    if (hr == S_OK) hr = length->removeChild(cell, nullptr);
    Ref<IQVRCatalogObjectList> rows;
    Ref<IQVRCatalogObject> first;
    if (hr == S_OK) hr = unique->get_childNodes(&rows);
    if (hr == S_OK) hr = rows->getItem(1, &first);
    if (hr == S_OK) hr = unique->removeChild(first, nullptr);
    VARIANT_BOOL frozen = VARIANT_FALSE;
    if (hr == S_OK) hr = table->freezeCalculatedColumns(&frozen);
    return hr;
}

TEST(AllocationFaults, TableOperationsFailCleanlyAtEveryAllocation) {
    long runs = 0;
    for (long n = 1;; ++n) {
        {
            // Rows A-10 and B-30; a calculated column to freeze.
            Ref<IQVRCatalogTable> table = newTable();
            Ref<IQVRTableColumn> length = addColumn(table, "Length", qvrDataTypeFloat);
            Ref<IQVRTableColumn> thread = addColumn(table, "Thread");
            ASSERT_EQ(addCell(table, length, "A-10", Variant(25.5)), S_OK);
            ASSERT_EQ(addCell(table, thread, "A-10", Variant("M8")), S_OK);
            ASSERT_EQ(addCell(table, length, "B-30", Variant(40.0)), S_OK);
            addCalculatedColumn(table, "Weight", "Length * 2");
            HRESULT hr;
            {
                FailingAt failing(n);
                hr = tableOperations(table, length, thread);
            }
            ASSERT_TRUE(successOrOutOfMemory(hr)) << "allocation " << n;
            ASSERT_TRUE(tableIsWellFormed(table)) << "allocation " << n;
        }
        lastError();
        ASSERT_EQ(CanUnloadNow(), S_OK) << "an object outlived allocation " << n;
        ++runs;
        if (!fault.failed) break; // every allocation of the operations has failed once
    }
    EXPECT_GT(runs, 100);
}

} // namespace
} // namespace qvr::testing
