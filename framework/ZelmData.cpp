#include "framework/ZelmData.h"

#include "framework/LibconfigAutoConvert.h"

#include <boost/filesystem.hpp>
#include <boost/tokenizer.hpp>

#include <cstdlib>
#include <iostream>
#include <stdexcept>

ZelmData::~ZelmData() = default;

std::string ZelmData::className() const
{
    return "ZelmData";
}

std::string ZelmData::getQTADataDir(const std::string& relativeFile)
{
    const char* value = std::getenv("QTA_DATADIR");
    if (!value)
        throw std::logic_error("basic_string::_M_construct null not valid"); // the text that hosts know
    const std::string searchList = value;

    const boost::tokenizer<boost::char_separator<char>> directories(searchList, boost::char_separator<char>(":"));
    std::string last;
    for (const std::string& directory : directories) {
        if (!relativeFile.empty()) {
            boost::filesystem::path path(directory);
            path /= relativeFile;
            if (boost::filesystem::exists(path))
                return directory;
        }
        last = directory;
    }
    return relativeFile.empty() ? last : std::string();
}

std::string ZelmData::filePath(const std::string& fileName)
{
    const std::string relative = "powercfg/" + fileName;
    return getQTADataDir(relative) + "/" + relative;
}

bool ZelmData::readFile(libconfig::Config* cfg, std::string fileName)
{
    if (!cfg)
        return false;
    const std::string path = filePath(fileName);
    zelm::setAutoConvert(*cfg, true);
    try {
        // libconfig's scanner ends the process when it is given a directory. A path that can't be examined is
        // libconfig's to refuse, so the filesystem's error isn't ours to throw.
        boost::system::error_code unexamined;
        if (boost::filesystem::is_directory(path, unexamined))
            throw libconfig::FileIOException();
        cfg->readFile(path.c_str());
    } catch (const libconfig::FileIOException&) {
        std::cerr << "I/O error while reading file." << std::endl;
        throw;
    } catch (const libconfig::ParseException& error) {
        const char* file = error.getFile(); // null in older releases for the file itself
        std::cerr << "Parse error at " << (file ? file : path) << ":" << error.getLine() << " - " << error.getError()
                  << std::endl;
        throw;
    } catch (const std::string& error) {
        std::cout << "Zelm Data Exception: " << error << std::endl;
        throw;
    }
    return true;
}
