// The forms of files: rows of the format table, and the job document, which isn't in it.
#pragma once

#include "alidade/transfer/format_table.h"
#include "cli/messages.h"

#include <string>

namespace Cli {

/// A form that was chosen for a file. A null row is the job document.
struct TForm {
    const TIEFormatRow* m_pRow = nullptr;

    [[nodiscard]] bool IsJob() const { return m_pRow == nullptr; }
    [[nodiscard]] std::string GetKey() const { return m_pRow ? m_pRow->m_pKey : "job"; }
    [[nodiscard]] std::string GetTitle() const { return m_pRow ? m_pRow->m_pTitle : "Job document"; }
    /// The form as people name it: "sima (63)", "job".
    [[nodiscard]] std::string Describe() const;
    /// Delimited text, whose layout the command line may tell.
    [[nodiscard]] bool IsDelimited() const;
    /// A form whose first line may tell its layout: delimited text and the lists that share its fields.
    [[nodiscard]] bool HasHeader() const;
};

/// Finds the form of an input: the one that was asked for, or the only one that fits the file's content and name. A
/// layout on the command line (`bLayout`) speaks for delimited text among several. Gives Done, or the status to end
/// with.
EExit ChooseInput(const std::string& strFile, const std::string& strWanted, bool bLayout, TForm& form,
                  CMessages& messages);
/// Finds the form of an output: the one that was asked for, or that of the file's extension.
EExit ChooseOutput(const std::string& strFile, const std::string& strWanted, TForm& form, CMessages& messages);

} // namespace Cli
