#pragma once

#include "host/base/JsonFwd.h"
#include "host/base/Units.h"
#include "host/design/Distribution.h"

#include <functional>
#include <map>
#include <string>
#include <string_view>
#include <variant>
#include <vector>

namespace zelm::host {

struct JsonSource;

/// Whether a text is to be computed: "= lanes / 4".
bool isExpression(std::string_view text);

/// The parameters of a design, each with its value in what its dimension counts in, or a word.
class Parameters {
public:
    using Value = std::variant<Quantity, std::string>;

    Parameters() = default;
    /// Computes all; what is wrong with one is an Error that tells its place.
    Parameters(const Json& object, const JsonSource& source);

    /// What an expression comes to; scope is what the names of its file begin with. An Error tells what is wrong with
    /// it.
    Quantity number(const std::string& expression, const std::vector<std::string>& scopes = {}) const;
    /// The word that "= name" stands for.
    std::string word(const std::string& expression, const std::vector<std::string>& scopes = {}) const;
    const std::map<std::string, Value, std::less<>>& values() const
    {
        return m_values;
    }

    /// Those that are distributions, by their path in the design; each has its centre for a value.
    const std::vector<Uncertain>& uncertain() const
    {
        return m_uncertain;
    }

private:
    std::map<std::string, Value, std::less<>> m_values;
    std::vector<Uncertain> m_uncertain;
};

} // namespace zelm::host
