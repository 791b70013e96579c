#pragma once

#include <cstddef>
#include <memory>
#include <vector>

namespace zelm::host {

/// A list that its copies share until one of them changes it.
template <class T>
class SharedList {
public:
    const std::vector<T>& items() const
    {
        static const std::vector<T> none;
        return m_items ? *m_items : none;
    }
    /// This copy's own from now on.
    std::vector<T>& change()
    {
        if (!m_items)
            m_items = std::make_shared<std::vector<T>>();
        else if (m_items.use_count() > 1)
            m_items = std::make_shared<std::vector<T>>(*m_items);
        return *m_items;
    }

    auto begin() const
    {
        return items().begin();
    }
    auto end() const
    {
        return items().end();
    }
    std::size_t size() const
    {
        return items().size();
    }
    bool empty() const
    {
        return items().empty();
    }
    const T& operator[](std::size_t index) const
    {
        return items()[index];
    }
    const T& at(std::size_t index) const
    {
        return items().at(index);
    }
    const T& front() const
    {
        return items().front();
    }

private:
    std::shared_ptr<std::vector<T>> m_items;
};

} // namespace zelm::host
