#include "tests/support/failingProvider.h"

namespace vellums::tests {

class FailingProvider::Link : public Connection {
public:
    Link(const FailingProvider& owner, std::unique_ptr<Connection> real)
        : owner_(owner)
        , real_(std::move(real))
    {
    }
    std::unique_ptr<Recordset> query(std::u16string_view sql) override
    {
        owner_.hear(sql);
        return real_->query(sql);
    }
    std::int32_t execute(std::u16string_view sql) override
    {
        owner_.hear(sql);
        return real_->execute(sql);
    }
    std::vector<SchemaTable> tables() override { return real_->tables(); }
    void stopWhen(const std::function<bool()>& wanted) override { real_->stopWhen(wanted); }
    void beginBatch() override
    {
        real_->beginBatch();
        if (owner_.onBatch)
            owner_.onBatch(true);
    }
    void endBatch() override
    {
        if (owner_.losesBatch && owner_.losesBatch()) {
            real_.reset();
            throw ProviderError(u"The batch is lost.", owner_.number);
        }
        real_->endBatch();
        if (owner_.onBatch)
            owner_.onBatch(false);
    }

private:
    const FailingProvider& owner_;
    std::unique_ptr<Connection> real_;
};

std::unique_ptr<Connection> FailingProvider::open(const std::u16string& connectionString) const
{
    return std::make_unique<Link>(*this, client().open(connectionString));
}

void FailingProvider::hear(std::u16string_view sql) const
{
    statements_.emplace_back(sql);
    if (refuses && refuses(sql, static_cast<int>(statements_.size())))
        throw ProviderError(u"Refused.", number);
}

} // namespace vellums::tests
