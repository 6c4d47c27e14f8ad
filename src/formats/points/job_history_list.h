// The job history as comma-separated lines.
#pragma once

#include "alidade/frame/format_row.h"
#include "alidade/frame/point_exporter.h"

/// What passes through the form.
constexpr TIECarries kJobHistoryListCarries = CARRIES_JOB_HISTORY;

/// Writes a line for each table of the current dataset's job history: its number from 1, its two texts, and its tags
/// that have a value, as "name{value}" with nothing between them. Commas within values become blanks. Without a job
/// history there is no file.
class CIEJobHistoryListExporter : public CIEPointExporter {
public:
    using CIEPointExporter::CIEPointExporter;

    /// Tables plus the two framing steps.
    [[nodiscard]] int GetNumberOfSteps() override;
    /// First step: the file. Then one table a step, and at last the end of the file. False at once without a history.
    bool SingleStep() override;

private:
    [[nodiscard]] const CIEJobHistory* GetHistory() const;
    bool WriteTable(const TIEJobHistoryTable& table, int nNumber);
    void NoteTable(const TIEJobHistoryTable& table) const;
    void NoteObjects() const;
};
