#include "htmlpage.h"

#include <gumbo.h>

#include <algorithm>

namespace {

QString textOf(const GumboNode *node)
{
    if (node->type == GUMBO_NODE_TEXT || node->type == GUMBO_NODE_WHITESPACE)
        return QString::fromUtf8(node->v.text.text);
    QString text;
    if (node->type == GUMBO_NODE_ELEMENT) {
        const GumboVector &children = node->v.element.children;
        for (unsigned i = 0; i < children.length; ++i)
            text += textOf(static_cast<const GumboNode *>(children.data[i]));
    }
    return text;
}

QString tagOf(const GumboElement &element)
{
    if (element.tag != GUMBO_TAG_UNKNOWN)
        return gumbo_normalized_tagname(element.tag);
    GumboStringPiece tag = element.original_tag;
    gumbo_tag_from_original_text(&tag);
    return QString::fromUtf8(tag.data, int(tag.length));
}

void collect(const GumboNode *node, const QString &path, QVector<HtmlPage::Element> &elements)
{
    if (node->type != GUMBO_NODE_ELEMENT)
        return;
    HtmlPage::Element element;
    element.tag = tagOf(node->v.element);
    const GumboVector &attributes = node->v.element.attributes;
    for (unsigned i = 0; i < attributes.length; ++i) {
        const auto *attribute = static_cast<const GumboAttribute *>(attributes.data[i]);
        element.attributes.insert(attribute->name, QString::fromUtf8(attribute->value));
    }
    element.text = textOf(node).simplified();
    element.path =
        path + ' ' + element.attributes.value("id") + ' ' + element.attributes.value("class") + ' ';
    elements.append(element);
    const GumboVector &children = node->v.element.children;
    for (unsigned i = 0; i < children.length; ++i)
        collect(static_cast<const GumboNode *>(children.data[i]), element.path, elements);
}

} // namespace

HtmlPage::HtmlPage(const QByteArray &bytes)
{
    GumboOutput *output =
        gumbo_parse_with_options(&kGumboDefaultOptions, bytes.constData(), std::size_t(bytes.size()));
    m_errors = int(output->errors.length);
    collect(output->root, {}, m_elements);
    gumbo_destroy_output(&kGumboDefaultOptions, output);
}

QVector<HtmlPage::Element> HtmlPage::all(const QString &tag, const QString &inside) const
{
    QVector<Element> found;
    std::copy_if(
        m_elements.cbegin(), m_elements.cend(), std::back_inserter(found), [&](const Element &element) {
            return element.tag == tag && (inside.isEmpty() || element.path.contains(' ' + inside + ' '));
        });
    return found;
}

QString HtmlPage::text(const QString &id) const
{
    const auto element =
        std::find_if(m_elements.cbegin(), m_elements.cend(),
                     [&id](const Element &candidate) { return candidate.attributes.value("id") == id; });
    return element == m_elements.cend() ? QString() : element->text;
}
