#include <object_model/Buffer.h>

namespace object_model {

Buffer::Buffer() : m_buffer(nullptr), m_size(0) {}

Buffer::Buffer(char* buffer, unsigned long size) : m_buffer(buffer), m_size(size) {}

char* Buffer::getBuffer() { return m_buffer; }

const char* Buffer::getBuffer() const { return m_buffer; }

unsigned long Buffer::getSize() const { return m_size; }

}  // namespace object_model
