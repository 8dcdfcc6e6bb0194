#pragma once

#include "attr/attribute_fields.h"

#include <span>

namespace facetor {

// The controls of the pages, by their numbers. Exactly one of the radio buttons of a group is
// checked, whatever the flags of a file are.

/// The check boxes and radio buttons of a page.
std::span<const int> pageButtons(AttributePage page);

/// Whether a check box or radio button is checked; false for every other control.
bool isButtonChecked(const WorkingAttribute& working, int control);

/// Checks a radio button, or checks or clears a check box, `checked` being its new state. False,
/// with nothing changed, for every other control.
bool setButton(WorkingAttribute& working, int control, bool checked);

bool isCheckBox(int control);

/// The field that a control shows; 0 for every other control.
AttributeFields fieldOf(int control);

/// The colour that a colour button shows and changes; nullptr for every other control.
Rgb555* colourOfButton(WorkingAttribute& working, int control);

} // namespace facetor
