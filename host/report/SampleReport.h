#pragma once

#include "host/base/JsonFwd.h"
#include "host/base/Terminal.h"
#include "host/exchange/PointRows.h"
#include "host/study/Sample.h"

#include <string>

namespace zelm::host {

std::string sampleText(const Sample& sample, const Paint& paint);
Json sampleJson(const Sample& sample);
/// Histograms with cumulative curves and budgets, bands of rails, bars of indices.
std::string sampleHtml(const Sample& sample);
/// How many were drawn how, and of what.
std::string sampleLead(const Sample& sample);

/// What is told of each point of a sample, for programs.
PointColumns samplePointColumns(const Sample& plan);
PointRow samplePointRow(const SamplePoint& point);

} // namespace zelm::host
