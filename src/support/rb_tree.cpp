#include "support/rb_tree.h"

#include "support/codecs.h"

namespace {

constexpr size_t kPairCapacity = 8192;

/// Decodes into the emptied `out` up to a stop character; returns the cursor on it or at the end.
const char* DecodePart(LStringLongTemplate<char>& out, const char* cursor, const char* stopChars) {
  out.length = 0;
  LStringLongTemplateWriter<char> writer(out);
  cursor += LURIDecodeToWriterDirect(writer, cursor, stopChars);
  out.data[out.length] = 0;
  return cursor;
}

}  // namespace

template <typename T>
void LHashTableTemplate<T>::SetParmBottom(const T* name, const T* value) {
  if (!name) return;
  this->UpdateOrAdd(LStringLongKeyTemplate<T>(name), new LStringLongTemplate<T>(value ? value : ""));
}

template <typename T>
const T* LHashTableTemplate<T>::GetParm(const T* name) const {
  const auto* node = this->FindNode(LStringLongKeyTemplate<T>(name));
  return node ? node->value->Text() : nullptr;
}

template <typename T>
bool LHashTableTemplate<T>::GetBool(const T* name, bool defaultValue) const {
  const T* value = GetParm(name);
  return value && *value ? *value == '1' : defaultValue;
}

template <typename T>
void LHashTableTemplate<T>::LoadHTTPString(const T* text) {
  LStringLongTemplate<T> name;
  LStringLongTemplate<T> value;
  name.GrowToSize(kPairCapacity);
  value.GrowToSize(kPairCapacity);
  for (const T* cursor = text; *cursor;) {
    cursor = DecodePart(name, cursor, "=&");
    if (*cursor == '=') ++cursor;
    cursor = DecodePart(value, cursor, "&");
    if (*cursor == '&') ++cursor;
    if (!*name.Text()) continue;
    this->Add(LStringLongKeyTemplate<T>(name.Text()), new LStringLongTemplate<T>(value.Text()));
  }
}

template class LHashTableTemplate<char>;
