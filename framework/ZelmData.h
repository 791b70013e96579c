#pragma once

#include "framework/ZelmExport.h"

#include <string>

namespace libconfig {
class Config;
}

/// Base of all data blocks: the characterisation tables of one resource kind.
class ZELM_EXPORT ZelmData {
public:
    virtual std::string className() const;
    /// All tables as text, one line per value.
    virtual std::string reflect() const = 0;
    virtual ~ZelmData();

    /// The first directory of the search list QTA_DATADIR (separated by ':') that holds relativeFile, as it stands in
    /// the list; the last directory if relativeFile is empty; the empty string if none holds it or the list is empty.
    /// Throws std::logic_error if the variable isn't set: there is no default directory.
    static std::string getQTADataDir(const std::string& relativeFile);

    /// Parses "powercfg/" + fileName from the data directory into cfg. False for a null cfg, true after a parse; an
    /// unreadable or broken file is reported on standard error and leaves as libconfig's exception.
    static bool readFile(libconfig::Config* cfg, std::string fileName);

protected:
    /// Where readFile looks for a file.
    static std::string filePath(const std::string& fileName);

    ZelmData() = default;
    ZelmData(const ZelmData&) = default;
    ZelmData& operator=(const ZelmData&) = default;
};
