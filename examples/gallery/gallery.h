/* gallery.h - the sections of the gallery window, one per family of controls. */
#ifndef XC_GALLERY_H
#define XC_GALLERY_H

#include <X11/Intrinsic.h>

namespace gallery {

/* Builds a section's controls into `area`, an empty Form that nothing else uses. The
** window is not realized yet; the Form grows to what the section puts in it. */
using BuildSection = void (*)(Widget area);

struct Section {
    const char *title;
    BuildSection build;
    bool newColumn = false; /* starts a column to the right of the sections before it */
};

/* One file per section (section_*.cpp) defines its builder. */
void buildComboSection(Widget area);
void buildInputsSection(Widget area);
void buildPasswordSection(Widget area);
void buildTabsSection(Widget area);
void buildPopupSection(Widget area);

/* The sections from top to bottom. A new control adds its builder here. */
inline constexpr Section kSections[] = {
    {"Combo boxes", buildComboSection},
    {"Number, date and time inputs", buildInputsSection},
    {"Password entries", buildPasswordSection},
    {"Tab holders", buildTabsSection},
    {"Popup menu, tooltips, scrolling", buildPopupSection, true},
};

} // namespace gallery

#endif
