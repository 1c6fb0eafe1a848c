#ifndef STRANGER_FAMILIES_H
#define STRANGER_FAMILIES_H

// One function for each family of what the library exports. Each prints results that depend on the library alone.

void UseBuffers();
void UseTexts();
void UsePaths();
void UseTimes();
void UseEvents();
void UseTl1();
void UseSlots();
void UseSoftwareFiles();
void UsePlatform();

#endif
