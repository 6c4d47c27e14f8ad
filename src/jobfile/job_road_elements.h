// The horizontal elements of an alignment.
#pragma once

#include "jobfile/job_context.h"

#include "alidade/vellumlib/road_elements.h"

namespace JobParts {

void WriteRoadElement(CIEJobWriting& out, const CIEAlignmentObject& object);
/// Null after a failure.
std::unique_ptr<CIEAlignmentObject> ReadRoadElement(CIEJobReading& in, const CIEJsonValue& value);

} // namespace JobParts
