#pragma once
// The manual and the how-to guide are compiled into tv_app. A static library's
// resources are linked into a program only when something refers to them, so
// the entry (and any test that reads them) calls this once.
void InitProgramResources();
