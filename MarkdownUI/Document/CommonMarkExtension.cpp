#include "MarkdownUI/Document/CommonMarkExtension.h"

namespace quillmoth::markdown {

const std::set<CommonMarkExtension>& CommonMarkExtension::all() {
    static const std::set<CommonMarkExtension> extensions{
        {"autolink"}, {"strikethrough"}, {"table"}, {"tagfilter"}, {"tasklist"}};
    return extensions;
}

} // namespace quillmoth::markdown
