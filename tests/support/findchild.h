#pragma once
// Controls of a form by objectName: tests reach a form's widgets as a user
// would find them, not through its members.

#include <QLatin1String>
#include <gtest/gtest.h>

namespace tvtest {

// A control of a viewer by its objectName (the first of its type for an
// empty name), failing the test when there is none.
template <class T, class V>
T* child(const V& viewer, const char* name)
{
    T* w = *name ? viewer->template findChild<T*>(QLatin1String(name)) : viewer->template findChild<T*>();
    EXPECT_NE(w, nullptr) << name;
    return w;
}

} // namespace tvtest
