#pragma once

#include <memory>

namespace kordel::nuvo {
class Catalog;
}

namespace kordel::nuvo::demo {

// The data model of the demo database: a small CRM with coworkers,
// companies, persons, deals, history and products, named in English and
// Swedish, with saved filters per class.
std::unique_ptr<Catalog> demoCatalog();

} // namespace kordel::nuvo::demo
