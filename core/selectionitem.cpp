// SPDX-License-Identifier: MIT
#include "selectionitem.h"

#include <cstddef>
#include <limits>

namespace
{

constexpr double SMALLEST_LENGTH = 1e-6;
constexpr double UNREACHABLE = std::numeric_limits<double>::infinity();

} // namespace

void TSelectionItem::Repair_Directions()
{
    TVector3* const directions[] = {&first_direction, &second_direction, &third_direction};
    const TVector3 diagonal = second_point - first_point;
    bool usable = diagonal.Length() > SMALLEST_LENGTH;
    for (const TVector3* direction : directions)
        usable = usable && direction->Length() > SMALLEST_LENGTH;

    for (int i = 0; i < 3; ++i) {
        TVector3& direction = *directions[i];
        if (kind != BOX || !usable) {
            direction = TVector3();
            direction(i) = kind == BOX ? 1.0 : 0.0;
            continue;
        }
        if (!((direction ^ diagonal) > 0.0))
            direction = direction * -1.0;
        direction.Normal();
    }
}

bool TSelectionItem::Is_Inside_Box(const TVector3& point) const
{
    return Is_Between_Planes(point, first_point, second_point, first_direction) &&
           Is_Between_Planes(point, first_point, second_point, second_direction) &&
           Is_Between_Planes(point, first_point, second_point, third_direction);
}

double TSelectionItem::Distance_From_Segment(const TVector3& point) const
{
    const TVector3 axis = second_point - first_point;
    const double length = axis.Length();
    if (!(length > SMALLEST_LENGTH && length < UNREACHABLE) ||
        !Is_Between_Planes(point, first_point, second_point, axis))
        return UNREACHABLE;
    return ((point - (first_point + second_point) / 2.0) * (axis / length)).Length();
}

bool Is_Between_Planes(const TVector3& point, const TVector3& a, const TVector3& b, const TVector3& direction)
{
    const double from_a = (point - a) ^ direction;
    const double from_b = (point - b) ^ direction;
    return (from_a > 0.0 && from_b < 0.0) || (from_a < 0.0 && from_b > 0.0);
}

int Find_Item(const std::vector<TSelectionItem>& items, const TVector3& point)
{
    int nearest = -1;
    double nearest_distance = UNREACHABLE;
    for (std::size_t offset = 0; offset < items.size(); ++offset) {
        const TSelectionItem& item = items[offset];
        if (item.kind == TSelectionItem::BOX) {
            if (item.Is_Inside_Box(point))
                return static_cast<int>(offset);
            continue;
        }
        const double distance = item.Distance_From_Segment(point);
        if (distance < nearest_distance) {
            nearest = static_cast<int>(offset);
            nearest_distance = distance;
        }
    }
    return nearest;
}
