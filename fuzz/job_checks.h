// What holds for every job, whatever file it came from.
#pragma once

#include "alidade/vellumlib/data.h"

/// All coordinates are finite, all texts are UTF-8, all references lead somewhere, names find their objects.
void CheckJob(const CIEData& job);
/// The objects of both current datasets have the same kinds, names, codes and numbers of stations.
void CheckSameObjects(CIEData& left, CIEData& right);
