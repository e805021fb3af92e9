#include "tests/support/client.h"

#include "store/embedded/embeddedProvider.h"

namespace vellums::tests {
namespace {

const Provider*& chosen()
{
    static const EmbeddedProvider embedded;
    static const Provider* provider = &embedded;
    return provider;
}

} // namespace

const Provider& client()
{
    return *chosen();
}

void runThrough(const Provider& provider)
{
    chosen() = &provider;
}

} // namespace vellums::tests
