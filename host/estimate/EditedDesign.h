#pragma once

#include "host/base/JsonFwd.h"
#include "host/estimate/RunningDesign.h"

#include <cstddef>
#include <memory>
#include <string>
#include <vector>

namespace zelm::host {

/// A design file at work: values are set by their places, and only what they reach is read and computed again.
class EditedDesign {
public:
    /// The places are paths as messages write them; an Error, without the path, says what is wrong with one.
    EditedDesign(const Json& root, const JsonSource& source, const std::vector<std::string>& places, Gaps gaps,
                 Scope scope = Scope::whole);
    ~EditedDesign();
    EditedDesign(EditedDesign&&) noexcept;

    /// Sets the value of the place of that index.
    void set(std::size_t place, const Json& value);
    /// The same for any place, by its path; for designs without places of their own, which this may move.
    void set(const std::string& path, const Json& value);
    /// The data are off by these from now on; null: by nothing. To be said again when they change.
    void scaleBy(const DataFactors* factors);
    const Json& root() const;
    const Estimate& estimate();

private:
    struct Tree;

    std::unique_ptr<Tree> m_tree;
};

} // namespace zelm::host
