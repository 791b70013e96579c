// The system as a Python module: texts, numbers and arrays go in and out, and what they mean to people in Python is the
// package's matter around it.
#include "python/module/Module.h"

#include "host/base/Error.h"
#include "host/base/Files.h"
#include "host/base/Text.h"
#include "host/blocks/DataDirectory.h"
#include "host/commands/Tool.h"

#include <fmt/format.h>
#include <pybind11/stl.h>

#include <cstdlib>
#include <deque>
#include <exception>
#include <mutex>
#include <optional>
#include <string>
#include <tuple>
#include <utility>
#include <vector>

namespace zelm::python {

namespace {

namespace py = pybind11;

// ---- The data directory ----

struct DataChoice {
    std::mutex mutex{};
    std::string packaged{}; ///< the data that came with the package; empty if none did
    bool chosen = false;
    bool used = false;
};

DataChoice& dataChoice()
{
    static DataChoice choice;
    return choice;
}

std::string chosenData()
{
    const char* directories = std::getenv("QTA_DATADIR"); // NOLINT(concurrency-mt-unsafe): set under the mutex
    return directories ? directories : "";
}

void chooseData(DataChoice& choice, const std::string& wanted)
{
    host::chooseDataDirectory(wanted.empty() && chosenData().empty() ? choice.packaged : wanted);
    choice.chosen = true;
}

std::string dataDirectory(const std::optional<std::string>& wanted)
{
    DataChoice& choice = dataChoice();
    const std::lock_guard lock(choice.mutex);
    if (wanted && choice.used && *wanted != chosenData())
        throw host::DataError(fmt::format("data_directory: the data of {} are in use already; choose others before the "
                                          "first estimate",
                                          chosenData()));
    if (wanted && wanted->empty())
        throw host::DataError("data_directory: the name of the data directory is empty");
    if (wanted || !choice.chosen)
        chooseData(choice, wanted.value_or(""));
    return chosenData();
}

void setPackagedData(std::string directory)
{
    DataChoice& choice = dataChoice();
    const std::lock_guard lock(choice.mutex);
    choice.packaged = std::move(directory);
}

// ---- Commands ----

// A text that stands for a file, and its name.
using TextOfFile = std::pair<std::string, std::string>;

std::tuple<int, std::string, std::vector<std::string>> run(const std::vector<std::string>& words,
                                                           const std::vector<TextOfFile>& given)
{
    const py::gil_scoped_release others;
    useData();
    std::deque<host::GivenText> texts; // each stays where it is
    for (const auto& [name, text] : given)
        texts.emplace_back(name, text);
    host::Said said = host::runCommand(words, host::allCommands());
    return {said.code, std::move(said.out), std::move(said.complaints)};
}

int runMain(std::vector<std::string> words)
{
    std::vector<char*> arguments;
    for (std::string& word : words)
        arguments.push_back(word.data());
    arguments.push_back(nullptr);
    const py::gil_scoped_release others;
    return host::runTool(static_cast<int>(words.size()), arguments.data(), host::allCommands());
}

// ---- Errors ----

void raise(const char* name, const char* message)
{
    const py::object type = py::module_::import("zelm._errors").attr(name);
    const py::object error = type(host::validUtf8(message), host::suggestedNames(message));
    PyErr_SetObject(type.ptr(), error.ptr());
}

void translate(std::exception_ptr thrown)
{
    try {
        if (thrown)
            std::rethrow_exception(std::move(thrown));
    } catch (const host::DataError& error) {
        raise("DataError", error.what());
    } catch (const host::Error& error) {
        raise("DesignError", error.what());
    }
}

} // namespace

void useData()
{
    DataChoice& choice = dataChoice();
    const std::lock_guard lock(choice.mutex);
    if (!choice.chosen)
        chooseData(choice, "");
    choice.used = true;
}

} // namespace zelm::python

PYBIND11_MODULE(_zelm, module)
{
    using namespace zelm::python;
    namespace py = pybind11;
    module.doc() = "What the package zelm is made of; scripts use that.";
    module.attr("version") = ZELM_VERSION;
    py::register_exception_translator(translate);
    module.def("data_directory", dataDirectory, py::arg("path") = py::none(),
               "Chooses the data before they are first used; the data directory in use.");
    module.def("set_packaged_data", setPackagedData, py::arg("path"), "The data directory for those who choose none.");
    module.def("run", run, py::arg("words"), py::arg("given"),
               "Runs a command of the tool, with texts that stand for files: its exit code, output and complaints.");
    module.def("main", runMain, py::arg("words"), "The tool itself: prints, and returns the exit code.");
    addCalc(module);
    addDesign(module);
}
