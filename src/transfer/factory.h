// Makes the importer or exporter of a format code.
#pragma once

#include "alidade/frame/exporter.h"
#include "alidade/frame/importer.h"

#include <memory>

/// Null for a code without a format, for one that isn't built yet, and if memory doesn't suffice. The job isn't owned.
/// An exporter knows what its form carries, so that it can tell what it leaves out.
std::unique_ptr<CIEImporter> CreateImporter(CIEData* pData, const CString& strFileName, int nCode);
std::unique_ptr<CIEExporter> CreateExporter(CIEData* pData, const CString& strFileName, int nCode);
