// The client of the tests, refusing statements as a test says.
#pragma once

#include "store/connection.h"
#include "tests/support/client.h"

#include <functional>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

namespace vellums::tests {

// The statements of all its connections, batches left out, are counted from 1.
class FailingProvider : public Provider {
public:
    // True: this statement is refused, and nothing of it is done.
    std::function<bool(std::u16string_view sql, int number)> refuses;
    // True: this end of a batch fails, and the batch is lost where batches are known.
    std::function<bool()> losesBatch;
    std::function<void(bool begins)> onBatch; // a batch begins or has ended
    std::int32_t number = -2147467259;        // of the errors

    std::unique_ptr<Connection> open(const std::u16string& connectionString) const override;
    void createDatabase(const std::u16string& path, const std::u16string& table) const override
    {
        client().createDatabase(path, table);
    }
    void compact(const std::u16string& source, const std::u16string& destination) const override
    {
        client().compact(source, destination);
    }

    const std::vector<std::u16string>& statements() const { return statements_; }

private:
    class Link;
    void hear(std::u16string_view sql) const; // throws ProviderError

    mutable std::vector<std::u16string> statements_;
};

} // namespace vellums::tests
