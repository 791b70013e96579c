#pragma once

#include "host/base/JsonFwd.h"
#include "host/base/Terminal.h"
#include "host/study/Sample.h"

#include <string>

namespace zelm::host {

/// "sobol", as options say it.
std::string_view methodWord(SampleMethod method);

std::string sampleText(const Sample& sample, const Paint& paint);
Json sampleJson(const Sample& sample);
/// Histograms with cumulative curves and budgets, bands of rails, bars of indices.
std::string sampleHtml(const Sample& sample);
/// How many were drawn how, and of what.
std::string sampleLead(const Sample& sample);

/// The line of names of a sample's points, and one for each of them.
std::string sampleCsvHeader(const Sample& plan);
std::string sampleCsvLine(const SamplePoint& point);

} // namespace zelm::host
