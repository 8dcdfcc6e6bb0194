#pragma once

#include "ui/list_columns.h"

#include <windows.h>

#include <functional>
#include <initializer_list>
#include <optional>
#include <string>

namespace facetor {

// A list of many rows of text in a dialog, which asks for a text when it shows it: a list view in
// its report form with LVS_OWNERDATA and LVS_SINGLESEL.

/// Makes the columns. The last one takes what the others leave; call fitLastColumn() when the list
/// has another size.
void prepareTextList(HWND list, std::initializer_list<ListColumn> columns);
void fitLastColumn(HWND list);

/// Says how many rows there are now and that their texts are others. No row is chosen afterwards
/// but one that is given.
void setTextRows(HWND list, std::size_t rows, std::optional<std::size_t> chosen = std::nullopt);

/// The chosen row.
std::optional<std::size_t> chosenTextRow(HWND list);

/// Answers a notification that asks for a text. False for another one.
bool answerTextList(LPARAM notification,
                    const std::function<std::string(std::size_t row, int column)>& textOf);

/// The row that the user has just chosen, maybe once more, when that is what a notification tells.
/// For one click it may come twice.
std::optional<std::size_t> rowChosenBy(LPARAM notification);

} // namespace facetor
