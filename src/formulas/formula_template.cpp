#include "formulas/formula_template.h"

#include <algorithm>
#include <string_view>

#include "formulas/formula_tokens.h"

namespace qvr {
namespace {

// A name made of the characters a decimal number's tokens are made of ("5", "e3", "1E").
bool spellsLikeNumberToken(const String& name) {
    const std::string_view text = name.view();
    return !text.empty() && std::all_of(text.begin(), text.end(), [](char c) {
        return (c >= '0' && c <= '9') || c == 'e' || c == 'E';
    });
}

struct Occurrence {
    std::size_t position;
    std::size_t length;
    std::size_t group;
};

} // namespace

std::unique_ptr<FormulaTemplate> FormulaTemplate::build(const String& formula,
                                                        std::span<const String> names, LCID lcid) {
    if (formula.isNull()) return nullptr;
    const std::string_view text = formula.view();
    std::unique_ptr<FormulaTemplate> shape(new FormulaTemplate);
    std::vector<const String*> groupNames;
    std::vector<Occurrence> occurrences;
    for (const String& name : names) {
        // A quote in a name would let a pasted value move where strings begin and end.
        if (name.view().find('"') != std::string_view::npos) return nullptr;
        shape->numbersCanName_ = shape->numbersCanName_ || spellsLikeNumberToken(name);
        std::int32_t group = -1;
        if (!name.isEmpty()) {
            const auto same =
                std::find_if(groupNames.begin(), groupNames.end(),
                             [&](const String* n) { return n->equalsIgnoreCase(name.view()); });
            if (same != groupNames.end()) {
                group = static_cast<std::int32_t>(same - groupNames.begin());
            } else {
                group = static_cast<std::int32_t>(groupNames.size());
                groupNames.push_back(&name);
                // Where substitution would paste: each search starts behind the last hit.
                for (auto hit = FormulaTokens::find(text, name); hit;
                     hit = FormulaTokens::find(text, name, hit.position + hit.length))
                    occurrences.push_back(
                        {hit.position, hit.length, static_cast<std::size_t>(group)});
            }
        }
        shape->groupOfColumn_.push_back(group);
    }
    shape->groups_.resize(groupNames.size());
    std::sort(occurrences.begin(), occurrences.end(),
              [](const Occurrence& a, const Occurrence& b) { return a.position < b.position; });
    std::vector<std::string_view> pieces;
    std::size_t from = 0;
    for (const Occurrence& o : occurrences) {
        shape->groups_[o.group].holes.push_back(pieces.size());
        pieces.push_back(text.substr(from, o.position - from));
        from = o.position + o.length;
    }
    pieces.push_back(text.substr(from));
    shape->expression_ = vbscript::ExpressionTemplate::build(pieces, lcid);
    if (!shape->expression_) return nullptr;
    return shape;
}

HRESULT FormulaTemplate::evaluate(FormulaColumns& columns, const String& rowId, Variant* result,
                                  bool* handled) {
    *handled = false;
    for (Group& group : groups_) group.filled = false;
    // The walk of substitution, column by column. While every value pasted so far reads as one
    // literal that names no column, a name occurs in the text the earlier columns left exactly
    // where it occurs in the formula.
    const auto count = static_cast<std::int32_t>(groupOfColumn_.size());
    for (std::int32_t i = 0; i < count; ++i) {
        // Every column's name must read, as for substitution; only a name the formula holds, at
        // places still empty, is wanted.
        const std::int32_t g = groupOfColumn_[static_cast<std::size_t>(i)];
        Group* group = g < 0 ? nullptr : &groups_[static_cast<std::size_t>(g)];
        const bool wanted = group && !group->holes.empty() && !group->filled;
        String name;
        HRESULT hr = columns.name(i, wanted ? &name : nullptr);
        if (hr != S_OK) {
            *handled = true;
            return hr;
        }
        if (!wanted || name.isEmpty()) continue;
        FormulaColumns::Lookup found = columns.cell(name, rowId);
        if (found.outcome == FormulaColumns::Lookup::Missing) found = columns.constant(name);
        if (found.outcome != FormulaColumns::Lookup::Found) continue;
        if (found.status != S_OK) {
            *handled = true;
            return found.status;
        }
        if (found.text.isEmpty()) continue;
        if (!found.isString && numbersCanName_) return S_OK;
        for (std::size_t hole : group->holes)
            if (!expression_->fill(hole, found.text.view(), found.isString)) return S_OK;
        group->filled = true;
    }
    // A name left in the text is a word for the engine: that is the textual road's affair.
    for (const Group& group : groups_)
        if (!group.filled && !group.holes.empty()) return S_OK;
    if (!expression_->evaluate(GetUserLocale(), result)) return S_OK;
    *handled = true;
    return S_OK;
}

} // namespace qvr
