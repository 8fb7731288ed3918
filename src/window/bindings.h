#pragma once

#include "app/controls.h"
#include "window/frame_refresh.h"

#include <memory>

class QAbstractButton;
class QCheckBox;
class QLabel;
class QProgressBar;

namespace kestrova {

class ValueComboBox;

/// Translates a control's text for the window; if absent, the text is shown as it is.
using Wording = QString (*)(const QString& text);

/// Each function binds one widget to one control: the widget shows the control's values, and the user's
/// actions on the widget go to the control. The widget must live as long as the FrameRefresh. Main thread
/// only.
void bindTextField(FrameRefresh& refresh, const std::shared_ptr<TextField>& field, QLabel& label,
                   Wording wording = nullptr);
void bindButton(FrameRefresh& refresh, const std::shared_ptr<Button>& button, QAbstractButton& widget);
void bindCheckBox(FrameRefresh& refresh, const std::shared_ptr<CheckBox>& box, QCheckBox& widget);
void bindComboBox(FrameRefresh& refresh, const std::shared_ptr<ComboBox>& combo, ValueComboBox& widget);
void bindProgressBar(FrameRefresh& refresh, const std::shared_ptr<ProgressIndicator>& progress,
                     QProgressBar& widget);

}  // namespace kestrova
