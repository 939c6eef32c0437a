<?xml version="1.0" encoding="UTF-8"?>
<c:CityModel xmlns:c="c" xmlns:g="g" xmlns:b="b" xmlns:i="i">
<g:boundedBy><g:Envelope srsDimension="2"><g:lowerCorner>0 0</g:lowerCorner></g:Envelope></g:boundedBy>
<c:cityObjectMember><i:Street><i:tekst>Markt &amp; Dom</i:tekst><g:Point><g:pos>1.5 -2</g:pos></g:Point><i:hoek>79.01</i:hoek></i:Street></c:cityObjectMember>
<c:cityObjectMember><b:Building><b:measuredHeight>7.5</b:measuredHeight><b:storeysAboveGround>2</b:storeysAboveGround><b:lod0FootPrint><g:MultiSurface><g:surfaceMember><g:Polygon><g:exterior><g:LinearRing><g:posList>0 0 9 0 9 9 0 9 0 0</g:posList></g:LinearRing></g:exterior><g:interior><g:LinearRing><g:posList>1 1 2 1 2 2 1 1</g:posList></g:LinearRing></g:interior></g:Polygon></g:surfaceMember></g:MultiSurface></b:lod0FootPrint></b:Building></c:cityObjectMember>
</c:CityModel>
