// The five conversions of letter case. Each replaces a string of the host's heap by a new one, so the caller's pointer
// changes.
//
// A backslash spares itself and the character behind it, and no more: the argument of a format code is converted like
// any other text. Only tcase_upper and tcase_lower tell a TEXT, which they convert throughout, from an MTEXT.
#pragma once

void tcase_sentence(wchar_t*& text, bool isMText);
void tcase_lower(wchar_t*& text, bool isMText);
void tcase_upper(wchar_t*& text, bool isMText);
void tcase_title(wchar_t*& text, bool isMText);
void tcase_change(wchar_t*& text, bool isMText);
