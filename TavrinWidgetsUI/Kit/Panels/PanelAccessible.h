#pragma once

namespace tavrin {

/// Tells assistive technology the roles of the panel's own widgets. Once; later calls do nothing.
void installPanelAccessibility();

} // namespace tavrin
