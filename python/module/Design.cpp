// Designs at work: edited by path, and estimated again.
#include "python/module/Module.h"

#include "host/base/Error.h"
#include "host/base/Files.h"
#include "host/base/Json.h"
#include "host/design/Design.h"
#include "host/design/Format.h"
#include "host/design/Include.h"
#include "host/design/Place.h"
#include "host/estimate/EditedDesign.h"
#include "host/report/Report.h"
#include "host/study/Quantity.h"

#include <fmt/format.h>
#include <pybind11/stl.h>

#include <memory>
#include <mutex>
#include <optional>
#include <string>
#include <utility>
#include <vector>

namespace zelm::python {

namespace {

namespace py = pybind11;
using host::Json;

// An estimate that was asked for; its report is made when somebody looks at it.
class Result {
public:
    explicit Result(host::Estimate estimate) : m_estimate(std::move(estimate)) {}

    std::string json() const
    {
        const py::gil_scoped_release others;
        return host::jsonText(host::jsonReport(m_estimate));
    }

private:
    host::Estimate m_estimate;
};

// Runs with the others of Python running as well.
template <class Work>
auto locked(std::mutex& mutex, Work work)
{
    const py::gil_scoped_release others;
    const std::lock_guard lock(mutex);
    return work();
}

// Looks at a place, whose path its Errors tell.
template <class Look>
auto lookAt(const std::string& path, Look look)
{
    try {
        return look();
    } catch (const host::Error& error) {
        throw host::Error(fmt::format("{}: {}", path, error.what()));
    }
}

// A design file, the edits that were made since, and the design at work if it was estimated.
class Design {
public:
    Design(std::string file, std::string text) : m_file(std::move(file)), m_text(std::move(text))
    {
        m_source.file = m_file;
        m_root = host::parseDesignTree(m_text, m_source);
        host::readDesign(m_root, m_source); // tells mistakes now
    }

    std::string get(const std::string& path) const
    {
        return locked(m_mutex, [&] {
            const Json* place = lookAt(path, [&] { return host::findPlace(root(), path); });
            if (!place)
                throw host::Error(fmt::format("{}: the design says nothing there", path));
            return host::compactJson(*place);
        });
    }

    void set(const std::string& path, const std::string& value)
    {
        locked(m_mutex, [&] {
            const Json json = Json::parse(value);
            lookAt(path, [&] {
                if (m_running)
                    m_running->set(path, json);
                else
                    host::placeAt(m_root, path) = json;
            });
            note(path, json);
        });
    }

    /// The file's text with the edits. Files that it includes stay as they are.
    std::string text() const
    {
        return locked(m_mutex, [&] { return editedText(); });
    }

    void save(const std::string& file) const
    {
        locked(m_mutex, [&] { host::writeFile(file, editedText()); });
    }

    std::unique_ptr<Result> estimate(bool keepGoing)
    {
        return locked(m_mutex, [&] { return std::make_unique<Result>(estimated(keepGoing)); });
    }

    std::unique_ptr<Result> estimateWithCurves(bool keepGoing) const
    {
        return locked(m_mutex, [&] {
            useData();
            return std::make_unique<Result>(
                host::estimate(host::readDesign(root(), m_source), host::Curves::drawn, gapsFor(keepGoing)));
        });
    }

    double value(const std::string& quantity, bool keepGoing)
    {
        return locked(m_mutex, [&] {
            const host::Estimate& estimate = estimated(keepGoing);
            return host::valueOf(host::namedQuantity(quantity, estimate), estimate);
        });
    }

    const std::string& file() const
    {
        return m_file;
    }

private:
    // Of edits that follow each other at a place, the last one: but not beyond edits that others' paths may rest on.
    void note(const std::string& path, const Json& value)
    {
        const auto bearsOthers = [](const std::string& edited, const Json& to) {
            return to.is_structured() || edited.ends_with("name") || edited.ends_with("block");
        };
        for (auto edit = m_edits.rbegin(); edit != m_edits.rend() && !bearsOthers(edit->first, edit->second); ++edit) {
            if (edit->first == path) {
                edit->second = value;
                return;
            }
        }
        m_edits.emplace_back(path, value);
    }

    static host::Gaps gapsFor(bool keepGoing)
    {
        return keepGoing ? host::Gaps::warned : host::Gaps::refused;
    }

    const Json& root() const
    {
        return m_running ? m_running->root() : m_root;
    }

    const host::Estimate& estimated(bool keepGoing)
    {
        useData();
        if (!m_running || m_keepsGoing != keepGoing) {
            Json now = root();
            m_running.emplace(now, m_source, std::vector<std::string>(), gapsFor(keepGoing));
            m_keepsGoing = keepGoing;
        }
        return m_running->estimate();
    }

    std::string editedText() const
    {
        if (m_edits.empty())
            return m_text;
        host::JsonSource source{m_file, nullptr};
        Json own = host::parseJson(m_text, source);
        for (const auto& [path, value] : m_edits) {
            try {
                host::placeAt(own, path) = value;
            } catch (const host::Error& error) {
                throw host::Error(fmt::format("{}: {}; what stands in a file that {} includes is edited there", path,
                                              error.what(), m_file));
            }
        }
        return host::formattedDesign(host::jsonText(own), m_file);
    }

    std::string m_file;
    std::string m_text;
    host::JsonSource m_source;
    Json m_root; // until the design is at work
    std::vector<std::pair<std::string, Json>> m_edits;
    std::optional<host::EditedDesign> m_running;
    bool m_keepsGoing = false;
    mutable std::mutex m_mutex;
};

} // namespace

void addDesign(py::module_& module)
{
    py::class_<Result>(module, "Result", "An estimate whose report is made when it is asked for.")
        .def("json", &Result::json, "The report as the tool prints it.");
    py::class_<Design>(module, "Design", "A design file and its edits.")
        .def(py::init([](std::string file, std::string text) {
                 const py::gil_scoped_release others;
                 useData();
                 return std::make_unique<Design>(std::move(file), std::move(text));
             }),
             py::arg("file"), py::arg("text"))
        .def("get", &Design::get, py::arg("path"), "What stands at a path, as JSON.")
        .def("set", &Design::set, py::arg("path"), py::arg("value"), "Puts JSON there.")
        .def("text", &Design::text, "The file's text with the edits.")
        .def("save", &Design::save, py::arg("file"), "Writes that text.")
        .def("estimate", &Design::estimate, py::arg("keep_going"),
             "Estimates what the edits since the last time reach.")
        .def("estimate_with_curves", &Design::estimateWithCurves, py::arg("keep_going"),
             "Estimates all of it, with each side's power over the junction's temperature.")
        .def("value", &Design::value, py::arg("quantity"), py::arg("keep_going"), "A quantity of that estimate.")
        .def_property_readonly("file", &Design::file, "The file's name.");
    module.def(
        "read_file",
        [](const std::string& file) {
            const py::gil_scoped_release others;
            return host::readFile(file);
        },
        py::arg("file"), "A file's text, with the tool's errors.");
}

} // namespace zelm::python
