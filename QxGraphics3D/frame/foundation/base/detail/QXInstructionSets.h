/// @file
/// What the processor can do, for cores that are written more than once.
#pragma once

#include <span>

namespace QXC::detail {

/// Of the plain form, which runs everywhere.
inline unsigned char HasPlain() {
  return 1;
}

#if defined(__x86_64__) && defined(__GNUC__)
inline unsigned char HasAvx2() {
  __builtin_cpu_init();  // constructors run in no fixed order against the one that usually does this
  return __builtin_cpu_supports("avx2") ? 1 : 0;
}

/// With its operations on doubles and 64-bit integers.
inline unsigned char HasAvx512() {
  __builtin_cpu_init();
  return __builtin_cpu_supports("avx512f") && __builtin_cpu_supports("avx512dq") ? 1 : 0;
}
#endif

/// The last form of a table that the processor supports; forms stand in order of preference, and the first one runs
/// everywhere.
template <class Form>
Form const* ChooseForm(std::span<Form const> arrForms) {
  Form const* pChosen = &arrForms.front();
  for (Form const& form : arrForms) {
    if (form.m_pfnIsSupported()) pChosen = &form;
  }
  return pChosen;
}

}  // namespace QXC::detail
